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
 * Copying an element copies its whole subtree, moving one takes the subtree over. Copying, comparing, writing
 * and destroying recurse once per level: a document that is built by hand may nest 4,000 containers deep; the
 * reader accepts 1024. No function is safe to call on one document from two threads while one of them changes
 * it.
 */
namespace json {

class Array;
class Object;
class Null;
class Visitor;
class ConstVisitor;

template<class DataType>
class TrivialType_T;

/** A JSON number, kept as a double. */
using Number = TrivialType_T<double>;
/** A JSON string: bytes as they were read, normally UTF-8, without any check. May hold NUL bytes. */
using String = TrivialType_T<std::string>;
/** A JSON true or false. */
using Boolean = TrivialType_T<bool>;

/** True for the six element kinds: Object, Array, Number, String, Boolean, Null. */
template<class Type>
using IsElement_T =
    std::disjunction<std::is_same<Type, Object>, std::is_same<Type, Array>, std::is_same<Type, Number>,
                     std::is_same<Type, String>, std::is_same<Type, Boolean>, std::is_same<Type, Null>>;

/** Exists only for element kinds. */
template<class... Types>
using IfElement_T = std::enable_if_t<std::conjunction_v<IsElement_T<Types>...>>;

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
    using IfPlain_T =
        std::enable_if_t<std::is_convertible_v<PlainType, DataType> && !IsElement_T<PlainType>::value>;

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

/** The JSON null; it holds nothing. All nulls are equal. */
class Null
{
public:
    bool operator==(const Null& /*other*/) const { return true; }
};

/** Holds one element of any kind and owns it; a null after it was moved from. */
class UnknownElement
{
public:
    /** Holds a null. */
    UnknownElement() = default;
    /** Holds a copy of the element. */
    UnknownElement(const Object& object);
    UnknownElement(const Array& array);
    UnknownElement(const Number& number);
    UnknownElement(const String& string);
    UnknownElement(const Boolean& boolean);
    UnknownElement(const Null& null);
    /** Takes over the contents of the element. */
    UnknownElement(Object&& object);
    UnknownElement(Array&& array);
    UnknownElement(String&& string);

    /** Does not exist: a pointer would become a boolean. */
    UnknownElement(const char* szString) = delete;

    UnknownElement(const UnknownElement& other);
    UnknownElement(UnknownElement&& other) noexcept : m_pImp(std::exchange(other.m_pImp, nullptr)) {}
    ~UnknownElement();
    // By value: the other may be a descendant of what is replaced.
    UnknownElement& operator=(UnknownElement other) noexcept
    {
        std::swap(m_pImp, other.m_pImp);
        return *this;
    }

    /** Returns the held element; throws Exception "Bad cast" when it is of another kind. */
    template<class ElementType>
    const ElementType& CastTo() const
    {
        const ElementType* pElement = CastOrNull<ElementType>();
        return pElement ? *pElement : throw Exception("Bad cast");
    }

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
    operator const Object&() const { return CastTo<Object>(); }
    operator const Array&() const { return CastTo<Array>(); }
    operator const Number&() const { return CastTo<Number>(); }
    operator const String&() const { return CastTo<String>(); }
    operator const Boolean&() const { return CastTo<Boolean>(); }
    operator const Null&() const { return CastTo<Null>(); }

    /** As ConvertTo(): discard an element of another kind. */
    operator Object&() { return ConvertTo<Object>(); }
    operator Array&() { return ConvertTo<Array>(); }
    operator Number&() { return ConvertTo<Number>(); }
    operator String&() { return ConvertTo<String>(); }
    operator Boolean&() { return ConvertTo<Boolean>(); }
    operator Null&() { return ConvertTo<Null>(); }

    bool operator==(const UnknownElement& other) const;
    // For elements of known kind, which would be converted otherwise.
    template<class ElementType, class = IfElement_T<ElementType>>
    bool operator==(const ElementType& element) const
    {
        const ElementType* pElement = CastOrNull<ElementType>();
        return pElement && *pElement == element;
    }

    /** Calls the visitor's Visit for the held element. */
    void Accept(ConstVisitor& visitor) const;
    /** Calls the visitor's Visit for the held element, which the visitor may change. */
    void Accept(Visitor& visitor);

private:
    class Imp;
    template<class ElementType>
    class Imp_T;
    template<class ElementType>
    class CastVisitor_T;
    template<class ElementType>
    class ConstCastVisitor_T;

    const Imp& Held() const;

    // A null pointer stands for a Null, so that making and moving elements allocates nothing.
    Imp* m_pImp = nullptr;
};

template<class ElementType, class = IfElement_T<ElementType>>
bool operator==(const ElementType& left, const UnknownElement& right)
{
    return right == left;
}

/** Compares elements of two kinds, which are never equal. */
template<class LeftType, class RightType, class = IfElement_T<LeftType, RightType>,
         class = std::enable_if_t<!std::is_same_v<LeftType, RightType>>>
bool operator==(const LeftType& /*left*/, const RightType& /*right*/)
{
    return false;
}

/** The opposite of ==; otherwise it would compare converted values. */
template<class LeftType, class RightType, class = IfElement_T<LeftType, RightType>>
bool operator!=(const LeftType& left, const RightType& right)
{
    return !(left == right);
}

/** A JSON array: a sequence of elements of any kinds. */
class Array
{
public:
    using iterator = std::deque<UnknownElement>::iterator;
    using const_iterator = std::deque<UnknownElement>::const_iterator;

    /** Makes an empty array. */
    Array() = default;
    Array(const Array& other);
    Array(Array&& other) = default;
    ~Array() = default;
    // By value: the other may be a descendant.
    Array& operator=(Array other)
    {
        m_Elements.swap(other.m_Elements);
        return *this;
    }

    /** Return iterators to the first element and behind the last one. */
    iterator Begin() { return m_Elements.begin(); }
    iterator End() { return m_Elements.end(); }
    const_iterator Begin() const { return m_Elements.begin(); }
    const_iterator End() const { return m_Elements.end(); }

    /** Returns the number of elements. */
    std::size_t Size() const { return m_Elements.size(); }
    /** Returns whether there are no elements. */
    bool Empty() const { return m_Elements.empty(); }

    /** Inserts the element at the end; returns an iterator to it. Invalidates other iterators. */
    iterator Insert(UnknownElement element) { return Insert(std::move(element), End()); }
    /** Inserts the element before where; returns an iterator to it. Invalidates other iterators. */
    iterator Insert(UnknownElement element, const iterator& where)
    {
        return m_Elements.insert(where, std::move(element));
    }

    /**
     * Returns the element at nIndex, counted from 0. Grows the array with nulls when it is shorter; throws a
     * standard exception when there is no memory for that.
     */
    UnknownElement& operator[](std::size_t nIndex);
    /** Returns the element at nIndex, counted from 0; throws Exception "Array out of bounds" beyond the last.
     */
    const UnknownElement& operator[](std::size_t nIndex) const;

    bool operator==(const Array& other) const;

private:
    friend class Reader;

    std::deque<UnknownElement> m_Elements;
};

/** A JSON object: members with unique names, in the order in which they were inserted. */
class Object
{
public:
    /** A name and its element. */
    struct Member
    {
        /** Makes a member that holds a null, by default without a name. */
        Member(std::string&& nameIn = std::string()) : name(std::move(nameIn)) {}
        /** Makes a member. */
        Member(const std::string& nameIn, UnknownElement elementIn = UnknownElement())
            : name(nameIn), element(std::move(elementIn))
        {
        }

        bool operator==(const Member& other) const { return name == other.name && element == other.element; }

        std::string name;
        UnknownElement element;
    };

    using iterator = std::list<Member>::iterator;
    using const_iterator = std::list<Member>::const_iterator;

    /** Makes an empty object. */
    Object() = default;
    Object(const Object& other);
    Object(Object&& other) noexcept = default;
    ~Object() = default;
    // By value: the other may be a descendant.
    Object& operator=(Object other) noexcept
    {
        m_Members.swap(other.m_Members);
        return *this;
    }

    /** Return iterators to the first member and behind the last one. */
    iterator Begin() { return m_Members.begin(); }
    iterator End() { return m_Members.end(); }
    const_iterator Begin() const { return m_Members.begin(); }
    const_iterator End() const { return m_Members.end(); }

    /** Returns the number of members. */
    std::size_t Size() const { return m_Members.size(); }
    /** Returns whether there are no members. */
    bool Empty() const { return m_Members.empty(); }

    /** Returns the member with exactly this name, compared byte by byte from the front; End() when there is
     * none. */
    iterator Find(const std::string& sName);
    const_iterator Find(const std::string& sName) const;

    /**
     * Inserts the member at the end; returns an iterator to it. Throws Exception "Object member already
     * exists: " and the name when there is one of that name; the object is unchanged then.
     */
    iterator Insert(Member member) { return Insert(std::move(member), End()); }
    /** As Insert() at the end, but before where. */
    iterator Insert(Member member, iterator where);

    /** Returns the element of the member sName; appends a member holding a null when there is none. */
    UnknownElement& operator[](const std::string& sName);

    /** Compares members in their order: the same ones in another order are not equal. */
    bool operator==(const Object& other) const { return m_Members == other.m_Members; }

private:
    friend class Reader;

    std::list<Member> m_Members;
};

/** Is called with the element that an UnknownElement holds. */
class ConstVisitor
{
public:
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
