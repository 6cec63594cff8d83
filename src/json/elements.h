#pragma once

#include <cstddef>
#include <deque>
#include <list>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

/**
 * A small JSON library: documents as values (this file), read by json::Reader, written by json::Writer.
 *
 * Copying an element copies its whole subtree, moving one takes the subtree over. Trees of any depth can be
 * copied, compared, written and destroyed: nothing here recurses once per level. No function is safe to call
 * on one document from two threads while one of them changes it.
 */
namespace json {

class Array;
class Object;
class Null;
class Visitor;
class ConstVisitor;
class Reader;
class TreeCopier;
class TreeComparer;
class TreeEraser;

template<class DataType>
class TrivialType_T;

/** A JSON number, kept as a double. */
using Number = TrivialType_T<double>;
/** A JSON string: bytes as they were read, normally UTF-8, without any check. May hold NUL bytes. */
using String = TrivialType_T<std::string>;
/** A JSON true or false. */
using Boolean = TrivialType_T<bool>;

/** Is there only for the six element kinds: Object, Array, Number, String, Boolean and Null. */
template<class ElementType>
using IfElement_T =
    std::enable_if_t<std::disjunction_v<std::is_same<ElementType, Object>, std::is_same<ElementType, Array>,
                                        std::is_same<ElementType, Number>, std::is_same<ElementType, String>,
                                        std::is_same<ElementType, Boolean>, std::is_same<ElementType, Null>>>;

/** The base of all exceptions of the library; what() returns the message. */
class Exception : public std::runtime_error
{
public:
    /** Takes the message, which may hold bytes of the text that was read. */
    explicit Exception(const std::string& sMessage) : std::runtime_error(sMessage) {}
};

/** An element that holds one value of a C++ type. */
template<class DataType>
class TrivialType_T
{
    template<class PlainType>
    using IfPlain_T = std::enable_if_t<std::is_convertible_v<PlainType, DataType>>;

public:
    /** Holds a copy of tValue, by default an empty string, 0 or false. */
    TrivialType_T(DataType tValue = DataType()) : m_tValue(std::move(tValue)) {}

    /** Returns the value, to be changed in place. */
    DataType& Value() { return m_tValue; }
    /** Returns the value. */
    const DataType& Value() const { return m_tValue; }

    /** Converts to the value. */
    operator const DataType&() const { return m_tValue; }

    friend bool operator==(const TrivialType_T& left, const TrivialType_T& right)
    {
        return left.m_tValue == right.m_tValue;
    }
    // Templates: any other signature is as good a match as the comparison of two converted values.
    template<class PlainType, class = IfPlain_T<PlainType>>
    friend bool operator==(const TrivialType_T& left, const PlainType& right)
    {
        return left.m_tValue == right;
    }
    template<class PlainType, class = IfPlain_T<PlainType>>
    friend bool operator==(const PlainType& left, const TrivialType_T& right)
    {
        return left == right.m_tValue;
    }

private:
    DataType m_tValue;
};

/** The JSON null; it holds nothing. */
class Null
{
public:
    /** All nulls are equal. */
    bool operator==(const Null& /*other*/) const { return true; }
};

/**
 * Holds one element of any kind and owns it.
 *
 * An element that was moved from holds a null again.
 */
class UnknownElement
{
public:
    /** Holds a Null. */
    UnknownElement();
    /** Holds a copy of the object. */
    UnknownElement(const Object& object);
    /** Holds a copy of the array. */
    UnknownElement(const Array& array);
    /** Holds a copy of the number. */
    UnknownElement(const Number& number);
    /** Holds a copy of the string. */
    UnknownElement(const String& string);
    /** Holds a copy of the boolean. */
    UnknownElement(const Boolean& boolean);
    /** Holds a null. */
    UnknownElement(const Null& null);
    /** Takes over the object's members. */
    UnknownElement(Object&& object);
    /** Takes over the array's elements. */
    UnknownElement(Array&& array);
    /** Takes over the string's bytes. */
    UnknownElement(String&& string);

    /** Does not exist: a pointer would become a boolean. */
    UnknownElement(const char* szString) = delete;

    /** Copies the whole subtree. */
    UnknownElement(const UnknownElement& other);
    /** Takes over the subtree; the other holds a null afterwards. */
    UnknownElement(UnknownElement&& other) noexcept;
    /** Destroys the whole subtree. */
    ~UnknownElement();

    /** Replaces the subtree by a copy of the other's; the other may be this element or one of its
     * descendants. */
    UnknownElement& operator=(const UnknownElement& other);
    /** Takes over the subtree of the other, which may be this element or one of its descendants. */
    UnknownElement& operator=(UnknownElement&& other) noexcept;

    /** Returns the held element; throws Exception "Bad cast" when it is of another kind. */
    template<class ElementType>
    const ElementType& CastTo() const;

    /** Returns the held element; a null pointer when it is of another kind. */
    template<class ElementType>
    const ElementType* CastOrNull() const;

    /**
     * Returns the held element, to be changed in place. An element of another kind is discarded first and
     * replaced by a default one: an empty object, array or string, 0, false or null.
     */
    template<class ElementType>
    ElementType& ConvertTo();

    /** As CastTo(): throw Exception "Bad cast" when another kind is held. */
    operator const Object&() const;
    operator const Array&() const;
    operator const Number&() const;
    operator const String&() const;
    operator const Boolean&() const;
    operator const Null&() const;

    /** As ConvertTo(): they discard an element of another kind. */
    operator Object&();
    operator Array&();
    operator Number&();
    operator String&();
    operator Boolean&();
    operator Null&();

    /** Tells whether both hold the same kind and equal values. */
    bool operator==(const UnknownElement& other) const;

    /** Tells whether an equal element of that kind is held; copies and converts nothing. */
    template<class ElementType, class = IfElement_T<ElementType>>
    bool operator==(const ElementType& element) const;

    /** Calls the visitor's Visit for the held element. */
    void Accept(ConstVisitor& visitor) const;
    /** Calls the visitor's Visit for the held element, which the visitor may change. */
    void Accept(Visitor& visitor);

private:
    friend class Reader;
    friend class TreeCopier;
    friend class TreeComparer;
    friend class TreeEraser;

    class Imp;
    template<class ElementType>
    class Imp_T;
    template<class ElementType>
    class CastVisitor_T;
    template<class ElementType>
    class ConstCastVisitor_T;

    // Holds a null that is not made yet, as after a move.
    explicit UnknownElement(std::nullptr_t) noexcept : m_pImp(nullptr) {}

    const Imp& Held() const;

    Imp* m_pImp;
};

/** As UnknownElement's comparison with an element of known kind. Without it the right side would be
 * converted. */
template<class ElementType, class = IfElement_T<ElementType>>
bool operator==(const ElementType& left, const UnknownElement& right)
{
    return right == left;
}

/** A JSON array: a sequence of elements of any kinds. */
class Array
{
public:
    using iterator = std::deque<UnknownElement>::iterator;
    using const_iterator = std::deque<UnknownElement>::const_iterator;

    /** Makes an empty array. */
    Array() = default;
    /** Copies all elements with their subtrees. */
    Array(const Array& other);
    /** Takes over all elements; the other array is empty afterwards. */
    Array(Array&& other) = default;
    /** Destroys all elements with their subtrees. */
    ~Array();

    /** Replaces the elements by copies; the other may be this array or one of its descendants. */
    Array& operator=(const Array& other);
    /** Takes over the elements of the other, which may be this array or one of its descendants. */
    Array& operator=(Array&& other) noexcept;

    /** Return iterators to the first element and behind the last one. */
    iterator Begin() { return m_Elements.begin(); }
    iterator End() { return m_Elements.end(); }
    const_iterator Begin() const { return m_Elements.begin(); }
    const_iterator End() const { return m_Elements.end(); }

    /** Returns the number of elements. */
    std::size_t Size() const { return m_Elements.size(); }
    /** Tells whether there are no elements. */
    bool Empty() const { return m_Elements.empty(); }

    /** Inserts the element at the end; returns an iterator to it. Invalidates other iterators. */
    iterator Insert(UnknownElement element);
    /** Inserts the element before where; returns an iterator to it. Invalidates other iterators. */
    iterator Insert(UnknownElement element, iterator where);

    /**
     * Returns the element at nIndex, counted from 0. Grows the array with nulls when it is shorter; throws a
     * standard exception when there is no memory for that.
     */
    UnknownElement& operator[](std::size_t nIndex);
    /** Returns the element at nIndex, counted from 0; throws Exception "Array out of bounds" beyond the last.
     */
    const UnknownElement& operator[](std::size_t nIndex) const;

    /** Tells whether both have equal elements in the same order. */
    bool operator==(const Array& other) const;

private:
    friend class Reader;
    friend class TreeCopier;
    friend class TreeEraser;

    std::deque<UnknownElement> m_Elements;
};

/** A JSON object: members with unique names, in the order in which they were inserted. */
class Object
{
public:
    /** A name and its element. */
    struct Member
    {
        /** Makes a member, by default without a name and holding a null. */
        Member(const std::string& nameIn = std::string(), const UnknownElement& elementIn = UnknownElement())
            : name(nameIn), element(elementIn)
        {
        }
        /** Takes over the name and the element. */
        Member(std::string&& nameIn, UnknownElement&& elementIn)
            : name(std::move(nameIn)), element(std::move(elementIn))
        {
        }

        /** Tells whether names and elements are equal. */
        bool operator==(const Member& other) const { return name == other.name && element == other.element; }

        std::string name;
        UnknownElement element;
    };

    using iterator = std::list<Member>::iterator;
    using const_iterator = std::list<Member>::const_iterator;

    /** Makes an empty object. */
    Object() = default;
    /** Copies all members with their subtrees. */
    Object(const Object& other);
    /** Takes over all members; the other object is empty afterwards. */
    Object(Object&& other) noexcept = default;
    /** Destroys all members with their subtrees. */
    ~Object();

    /** Replaces the members by copies; the other may be this object or one of its descendants. */
    Object& operator=(const Object& other);
    /** Takes over the members of the other, which may be this object or one of its descendants. */
    Object& operator=(Object&& other) noexcept;

    /** Return iterators to the first member and behind the last one. */
    iterator Begin() { return m_Members.begin(); }
    iterator End() { return m_Members.end(); }
    const_iterator Begin() const { return m_Members.begin(); }
    const_iterator End() const { return m_Members.end(); }

    /** Returns the number of members. */
    std::size_t Size() const { return m_Members.size(); }
    /** Tells whether there are no members. */
    bool Empty() const { return m_Members.empty(); }

    /** Returns the member with exactly this name, compared byte by byte from the front; End() when there is
     * none. */
    iterator Find(const std::string& sName);
    /** Returns the member with exactly this name, compared byte by byte from the front; End() when there is
     * none. */
    const_iterator Find(const std::string& sName) const;

    /**
     * Inserts the member at the end; returns an iterator to it. Throws Exception "Object member already
     * exists: " and the name when there is one of that name; the object is unchanged then.
     */
    iterator Insert(Member member);
    /** As Insert() at the end, but before where. */
    iterator Insert(Member member, iterator where);

    /** Returns the element of the member sName; appends a member holding a null when there is none. */
    UnknownElement& operator[](const std::string& sName);

    /** Tells whether both have equal members in the same order. */
    bool operator==(const Object& other) const;

private:
    friend class Reader;
    friend class TreeCopier;
    friend class TreeEraser;

    std::list<Member> m_Members;
};

/** Is called with the element that an UnknownElement holds. */
class ConstVisitor
{
public:
    /** Lets visitors be destroyed through this class. */
    virtual ~ConstVisitor() = default;

    /** Each is called with an element of its kind, which stays owned by the caller. */
    virtual void Visit(const Array& array) = 0;
    virtual void Visit(const Object& object) = 0;
    virtual void Visit(const Number& number) = 0;
    virtual void Visit(const String& string) = 0;
    virtual void Visit(const Boolean& boolean) = 0;
    virtual void Visit(const Null& null) = 0;
};

/** Is called with the element that an UnknownElement holds, and may change it. */
class Visitor
{
public:
    /** Lets visitors be destroyed through this class. */
    virtual ~Visitor() = default;

    /** Each is called with an element of its kind, which stays owned by the caller. */
    virtual void Visit(Array& array) = 0;
    virtual void Visit(Object& object) = 0;
    virtual void Visit(Number& number) = 0;
    virtual void Visit(String& string) = 0;
    virtual void Visit(Boolean& boolean) = 0;
    virtual void Visit(Null& null) = 0;
};

} // namespace json
