#include "candidates.h"

#include "json/reader.h"
#include "json/writer.h"

#include <QJsonDocument>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <sstream>

namespace {

template<class LibraryType>
class Document_T : public Candidate::Document
{
public:
    explicit Document_T(const std::string& sText) { LibraryType::Read(sText, m_oRoot); }
    std::size_t Write() const override { return LibraryType::Write(m_oRoot); }

private:
    typename LibraryType::Root m_oRoot;
};

template<class LibraryType>
class Candidate_T : public Candidate
{
public:
    const char* Name() const override { return LibraryType::szName; }
    std::unique_ptr<Document> Read(const std::string& sText) const override
    {
        return std::make_unique<Document_T<LibraryType>>(sText);
    }
};

struct OwnLibrary
{
    static constexpr const char* szName = "own";
    using Root = json::Object;

    static void Read(const std::string& sText, Root& oRoot)
    {
        json::Reader::Read(oRoot, std::string_view(sText));
    }

    static std::size_t Write(const Root& oRoot)
    {
        std::ostringstream oStream;
        json::Writer::Write(oRoot, oStream);
        return std::size_t(oStream.tellp());
    }
};

struct QtLibrary
{
    static constexpr const char* szName = "qt";
    using Root = QJsonDocument;

    static void Read(const std::string& sText, Root& oRoot)
    {
        oRoot = QJsonDocument::fromJson(QByteArray::fromRawData(sText.data(), int(sText.size())));
    }

    static std::size_t Write(const Root& oRoot)
    {
        return std::size_t(oRoot.toJson(QJsonDocument::Compact).size());
    }
};

struct NlohmannLibrary
{
    static constexpr const char* szName = "nlohmann";
    using Root = nlohmann::json;

    static void Read(const std::string& sText, Root& oRoot) { oRoot = Root::parse(sText); }
    static std::size_t Write(const Root& oRoot) { return oRoot.dump().size(); }
};

struct RapidLibrary
{
    static constexpr const char* szName = "rapidjson";
    using Root = rapidjson::Document;

    static void Read(const std::string& sText, Root& oRoot) { oRoot.Parse(sText.data(), sText.size()); }

    static std::size_t Write(const Root& oRoot)
    {
        rapidjson::StringBuffer oBuffer;
        rapidjson::Writer<rapidjson::StringBuffer> oWriter(oBuffer);
        oRoot.Accept(oWriter);
        return oBuffer.GetSize();
    }
};

} // namespace

const std::vector<const Candidate*>& candidates()
{
    static const Candidate_T<OwnLibrary> oOwn;
    static const Candidate_T<NlohmannLibrary> oNlohmann;
    static const Candidate_T<QtLibrary> oQt;
    static const Candidate_T<RapidLibrary> oRapid;
    static const std::vector<const Candidate*> oAll = {&oOwn, &oNlohmann, &oQt, &oRapid};
    return oAll;
}
