#include "json/elements.h"

#include <algorithm>

namespace json {

/** The heap object behind an element. */
class UnknownElement::Imp
{
public:
    Imp() = default;
    Imp(const Imp&) = delete;
    Imp& operator=(const Imp&) = delete;

    virtual ~Imp() = default;
    virtual Imp* Clone() const = 0;
    virtual bool Compare(const Imp& other) const = 0;
    virtual void Accept(ConstVisitor& visitor) const = 0;
    virtual void Accept(Visitor& visitor) = 0;
};

/** Finds the element when it is of the wanted kind. */
template<class ElementType>
class UnknownElement::ConstCastVisitor_T : public ConstVisitor
{
public:
    void Visit(const Array& array) override { Keep(array); }
    void Visit(const Object& object) override { Keep(object); }
    void Visit(const Number& number) override { Keep(number); }
    void Visit(const String& string) override { Keep(string); }
    void Visit(const Boolean& boolean) override { Keep(boolean); }
    void Visit(const Null& null) override { Keep(null); }

    const ElementType* m_pElement = nullptr;

private:
    void Keep(const ElementType& element) { m_pElement = &element; }
    template<class OtherType>
    void Keep(const OtherType& /*element*/)
    {
    }
};

/** Finds the element, to be changed, when it is of the wanted kind. */
template<class ElementType>
class UnknownElement::CastVisitor_T : public Visitor
{
public:
    void Visit(Array& array) override { Keep(array); }
    void Visit(Object& object) override { Keep(object); }
    void Visit(Number& number) override { Keep(number); }
    void Visit(String& string) override { Keep(string); }
    void Visit(Boolean& boolean) override { Keep(boolean); }
    void Visit(Null& null) override { Keep(null); }

    ElementType* m_pElement = nullptr;

private:
    void Keep(ElementType& element) { m_pElement = &element; }
    template<class OtherType>
    void Keep(OtherType& /*element*/)
    {
    }
};

template<class ElementType>
class UnknownElement::Imp_T : public UnknownElement::Imp
{
public:
    Imp_T() = default;
    explicit Imp_T(const ElementType& element) : m_Element(element) {}
    explicit Imp_T(ElementType&& element) : m_Element(std::move(element)) {}

    Imp* Clone() const override { return new Imp_T(m_Element); }

    bool Compare(const Imp& other) const override
    {
        ConstCastVisitor_T<ElementType> oCast;
        other.Accept(oCast);
        return oCast.m_pElement && m_Element == *oCast.m_pElement;
    }

    void Accept(ConstVisitor& visitor) const override { visitor.Visit(m_Element); }
    void Accept(Visitor& visitor) override { visitor.Visit(m_Element); }

    ElementType m_Element;
};

UnknownElement::UnknownElement(const Object& object) : m_pImp(new Imp_T<Object>(object)) {}

UnknownElement::UnknownElement(const Array& array) : m_pImp(new Imp_T<Array>(array)) {}

UnknownElement::UnknownElement(const Number& number) : m_pImp(new Imp_T<Number>(number)) {}

UnknownElement::UnknownElement(const String& string) : m_pImp(new Imp_T<String>(string)) {}

UnknownElement::UnknownElement(const Boolean& boolean) : m_pImp(new Imp_T<Boolean>(boolean)) {}

UnknownElement::UnknownElement(const Null& null) : m_pImp(new Imp_T<Null>(null)) {}

UnknownElement::UnknownElement(Object&& object) : m_pImp(new Imp_T<Object>(std::move(object))) {}

UnknownElement::UnknownElement(Array&& array) : m_pImp(new Imp_T<Array>(std::move(array))) {}

UnknownElement::UnknownElement(String&& string) : m_pImp(new Imp_T<String>(std::move(string))) {}

UnknownElement::UnknownElement(const UnknownElement& other) : m_pImp(other.Held().Clone()) {}

UnknownElement::~UnknownElement()
{
    delete m_pImp;
}

const UnknownElement::Imp& UnknownElement::Held() const
{
    static const Imp_T<Null> oNull;
    return m_pImp ? *m_pImp : static_cast<const Imp&>(oNull);
}

template<class ElementType>
const ElementType* UnknownElement::CastOrNull() const
{
    ConstCastVisitor_T<ElementType> oCast;
    Accept(oCast);
    return oCast.m_pElement;
}

template<class ElementType>
ElementType& UnknownElement::ConvertTo()
{
    CastVisitor_T<ElementType> oCast;
    if (m_pImp) {
        m_pImp->Accept(oCast);
    }
    if (oCast.m_pElement) {
        return *oCast.m_pElement;
    }
    auto* pImp = new Imp_T<ElementType>;
    delete std::exchange(m_pImp, pImp);
    return pImp->m_Element;
}

template const Object* UnknownElement::CastOrNull<Object>() const;
template const Array* UnknownElement::CastOrNull<Array>() const;
template const Number* UnknownElement::CastOrNull<Number>() const;
template const String* UnknownElement::CastOrNull<String>() const;
template const Boolean* UnknownElement::CastOrNull<Boolean>() const;
template const Null* UnknownElement::CastOrNull<Null>() const;

template Object& UnknownElement::ConvertTo<Object>();
template Array& UnknownElement::ConvertTo<Array>();
template Number& UnknownElement::ConvertTo<Number>();
template String& UnknownElement::ConvertTo<String>();
template Boolean& UnknownElement::ConvertTo<Boolean>();
template Null& UnknownElement::ConvertTo<Null>();

bool UnknownElement::operator==(const UnknownElement& other) const
{
    return Held().Compare(other.Held());
}

void UnknownElement::Accept(ConstVisitor& visitor) const
{
    Held().Accept(visitor);
}

void UnknownElement::Accept(Visitor& visitor)
{
    if (!m_pImp) {
        m_pImp = new Imp_T<Null>;
    }
    m_pImp->Accept(visitor);
}

// Containers are copied, and arrays compared, element by element: the functions of the standard containers
// need several times the stack for each level.
Array::Array(const Array& other)
{
    for (const UnknownElement& element : other.m_Elements) {
        m_Elements.emplace_back() = element;
    }
}

UnknownElement& Array::operator[](std::size_t nIndex)
{
    if (nIndex >= m_Elements.size()) {
        m_Elements.resize(nIndex); // not nIndex + 1, which may be 0
        m_Elements.emplace_back();
    }
    return m_Elements[nIndex];
}

const UnknownElement& Array::operator[](std::size_t nIndex) const
{
    return nIndex < m_Elements.size() ? m_Elements[nIndex] : throw Exception("Array out of bounds");
}

bool Array::operator==(const Array& other) const
{
    bool bEqual = Size() == other.Size();
    for (std::size_t n = 0; bEqual && n < Size(); ++n) {
        bEqual = m_Elements[n] == other.m_Elements[n];
    }
    return bEqual;
}

Object::Object(const Object& other)
{
    for (const Member& member : other.m_Members) {
        m_Members.emplace_back(member.name).element = member.element;
    }
}

Object::iterator Object::Find(const std::string& sName)
{
    return std::find_if(Begin(), End(), [&sName](const Member& member) { return member.name == sName; });
}

Object::const_iterator Object::Find(const std::string& sName) const
{
    return std::find_if(Begin(), End(), [&sName](const Member& member) { return member.name == sName; });
}

Object::iterator Object::Insert(Member member, iterator where)
{
    if (Find(member.name) != End()) {
        throw Exception("Object member already exists: " + member.name);
    }
    return m_Members.insert(where, std::move(member));
}

UnknownElement& Object::operator[](const std::string& sName)
{
    const iterator itMember = Find(sName);
    return itMember != End() ? itMember->element : m_Members.emplace_back(sName).element;
}

} // namespace json
