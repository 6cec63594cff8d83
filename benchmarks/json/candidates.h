#pragma once

#include <memory>
#include <string>
#include <vector>

/** A JSON library in the comparison. */
class Candidate
{
public:
    /** A document as the library keeps it. */
    class Document
    {
    public:
        virtual ~Document() = default;
        /** Writes the document as compact text and returns its size in bytes. */
        virtual std::size_t Write() const = 0;
    };

    virtual ~Candidate() = default;
    /** Returns the name that the table shows. */
    virtual const char* Name() const = 0;
    /** Reads a document from text that is well-formed. */
    virtual std::unique_ptr<Document> Read(const std::string& sText) const = 0;
};

/** Returns all candidates, this program's own library first. They live until the process ends. */
const std::vector<const Candidate*>& candidates();
