#include "json/elements.h"

#include <algorithm>
#include <vector>

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
    template<class VisitedType>
    void Keep(const VisitedType& element)
    {
        if constexpr (std::is_same_v<VisitedType, ElementType>) {
            m_pElement = &element;
        }
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
    template<class VisitedType>
    void Keep(VisitedType& element)
    {
        if constexpr (std::is_same_v<VisitedType, ElementType>) {
            m_pElement = &element;
        }
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

/** Copies a tree level by level with a work list: however deep the tree is, the stack stays flat. */
class TreeCopier : private ConstVisitor
{
public:
    template<class ContainerType>
    void Copy(const ContainerType& from, ContainerType& to)
    {
        Fill(from, to);
        while (!m_Arrays.empty() || !m_Objects.empty()) {
            FillLast(m_Arrays);
            FillLast(m_Objects);
        }
    }

private:
    template<class ContainerType>
    using Jobs_T = std::vector<std::pair<const ContainerType*, ContainerType*>>;

    template<class ContainerType>
    void FillLast(Jobs_T<ContainerType>& jobs)
    {
        if (!jobs.empty()) {
            const auto job = jobs.back();
            jobs.pop_back();
            Fill(*job.first, *job.second);
        }
    }

    void Fill(const Array& from, Array& to)
    {
        for (const UnknownElement& element : from.m_Elements) {
            CopyElement(element, to.m_Elements.emplace_back(UnknownElement(nullptr)));
        }
    }

    void Fill(const Object& from, Object& to)
    {
        for (const Object::Member& member : from.m_Members) {
            CopyElement(member.element,
                        to.m_Members.emplace_back(member.name, UnknownElement(nullptr)).element);
        }
    }

    void CopyElement(const UnknownElement& from, UnknownElement& to)
    {
        m_pTarget = &to;
        from.Accept(*this);
    }

    template<class ElementType>
    void CopyLeaf(const ElementType& element)
    {
        m_pTarget->ConvertTo<ElementType>() = element;
    }

    void Visit(const Array& array) override { m_Arrays.emplace_back(&array, &m_pTarget->ConvertTo<Array>()); }
    void Visit(const Object& object) override
    {
        m_Objects.emplace_back(&object, &m_pTarget->ConvertTo<Object>());
    }
    void Visit(const Number& number) override { CopyLeaf(number); }
    void Visit(const String& string) override { CopyLeaf(string); }
    void Visit(const Boolean& boolean) override { CopyLeaf(boolean); }
    void Visit(const Null& null) override { CopyLeaf(null); }

    Jobs_T<Array> m_Arrays;
    Jobs_T<Object> m_Objects;
    UnknownElement* m_pTarget = nullptr;
};

/** Empties a container: descendants that are containers are taken out and emptied one by one from a work
 * list. */
class TreeEraser : private Visitor
{
public:
    template<class ContainerType>
    void Erase(ContainerType& container)
    {
        Empty(container);
        while (!m_Pending.empty()) {
            const sPending last = std::move(m_Pending.back());
            m_Pending.pop_back();
            if (last.pArray) {
                Empty(*last.pArray);
            } else {
                Empty(*last.pObject);
            }
        }
    }

private:
    struct sPending
    {
        UnknownElement oOwner;
        Array* pArray;
        Object* pObject;
    };

    void Empty(Array& array)
    {
        for (UnknownElement& element : array.m_Elements) {
            TakeOut(element);
        }
        array.m_Elements.clear();
    }

    void Empty(Object& object)
    {
        for (Object::Member& member : object.m_Members) {
            TakeOut(member.element);
        }
        object.m_Members.clear();
    }

    void TakeOut(UnknownElement& element)
    {
        if (element.m_pImp) {
            m_pElement = &element;
            element.Accept(*this);
        }
    }

    void Visit(Array& array) override
    {
        if (!array.Empty()) {
            m_Pending.push_back({std::move(*m_pElement), &array, nullptr});
        }
    }

    void Visit(Object& object) override
    {
        if (!object.Empty()) {
            m_Pending.push_back({std::move(*m_pElement), nullptr, &object});
        }
    }

    void Visit(Number& /*number*/) override {}
    void Visit(String& /*string*/) override {}
    void Visit(Boolean& /*boolean*/) override {}
    void Visit(Null& /*null*/) override {}

    std::vector<sPending> m_Pending;
    UnknownElement* m_pElement = nullptr;
};

namespace {

/** Empties a container: by plain recursion, which is faster, as long as that is not deep. */
template<class ContainerType, class ChildrenType>
void EraseTree(ContainerType& container, ChildrenType& children)
{
    constexpr unsigned int nMaxRecursion = 64;
    thread_local unsigned int nRecursion = 0;

    if (nRecursion == nMaxRecursion) {
        TreeEraser().Erase(container);
        return;
    }
    ++nRecursion;
    children.clear();
    --nRecursion;
}

} // namespace

/** Compares two trees with a work list of the containers that are still to be compared. */
class TreeComparer : private ConstVisitor
{
public:
    template<class ContainerType>
    bool Compare(const ContainerType& left, const ContainerType& right)
    {
        m_bEqual = left.Size() == right.Size() && CompareChildren(left, right);
        while (m_bEqual && !(m_Arrays.empty() && m_Objects.empty())) {
            CompareLast(m_Arrays);
            CompareLast(m_Objects);
        }
        return m_bEqual;
    }

private:
    template<class ContainerType>
    using Jobs_T = std::vector<std::pair<const ContainerType*, const ContainerType*>>;

    template<class ContainerType>
    void CompareLast(Jobs_T<ContainerType>& jobs)
    {
        if (m_bEqual && !jobs.empty()) {
            const auto job = jobs.back();
            jobs.pop_back();
            m_bEqual = CompareChildren(*job.first, *job.second);
        }
    }

    bool CompareChildren(const Array& left, const Array& right)
    {
        return std::equal(left.Begin(), left.End(), right.Begin(),
                          [this](const UnknownElement& first, const UnknownElement& second) {
                              return CompareElement(first, second);
                          });
    }

    bool CompareChildren(const Object& left, const Object& right)
    {
        return std::equal(left.Begin(), left.End(), right.Begin(),
                          [this](const Object::Member& first, const Object::Member& second) {
                              return first.name == second.name &&
                                     CompareElement(first.element, second.element);
                          });
    }

    bool CompareElement(const UnknownElement& left, const UnknownElement& right)
    {
        m_pRight = &right;
        left.Accept(*this);
        return m_bEqual;
    }

    template<class ElementType>
    void CompareLeaf(const ElementType& left)
    {
        m_bEqual = *m_pRight == left;
    }

    void Visit(const Array& array) override { Postpone(array, m_Arrays); }
    void Visit(const Object& object) override { Postpone(object, m_Objects); }
    void Visit(const Number& number) override { CompareLeaf(number); }
    void Visit(const String& string) override { CompareLeaf(string); }
    void Visit(const Boolean& boolean) override { CompareLeaf(boolean); }
    void Visit(const Null& null) override { CompareLeaf(null); }

    template<class ContainerType>
    void Postpone(const ContainerType& left, Jobs_T<ContainerType>& jobs)
    {
        const ContainerType* pRight = m_pRight->CastOrNull<ContainerType>();
        m_bEqual = pRight && left.Size() == pRight->Size();
        if (m_bEqual) {
            jobs.emplace_back(&left, pRight);
        }
    }

    Jobs_T<Array> m_Arrays;
    Jobs_T<Object> m_Objects;
    const UnknownElement* m_pRight = nullptr;
    bool m_bEqual = true;
};

UnknownElement::UnknownElement() : m_pImp(new Imp_T<Null>) {}

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

UnknownElement::UnknownElement(UnknownElement&& other) noexcept : m_pImp(std::exchange(other.m_pImp, nullptr))
{
}

UnknownElement::~UnknownElement()
{
    delete m_pImp;
}

UnknownElement& UnknownElement::operator=(const UnknownElement& other)
{
    if (this != &other) {
        *this = UnknownElement(other);
    }
    return *this;
}

UnknownElement& UnknownElement::operator=(UnknownElement&& other) noexcept
{
    // The other's subtree is held first: the old one, which may contain the other, goes when all is done.
    UnknownElement oTaken(std::move(other));
    std::swap(m_pImp, oTaken.m_pImp);
    return *this;
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
const ElementType& UnknownElement::CastTo() const
{
    const ElementType* pElement = CastOrNull<ElementType>();
    if (!pElement) {
        throw Exception("Bad cast");
    }
    return *pElement;
}

template<class ElementType>
ElementType& UnknownElement::ConvertTo()
{
    if (m_pImp) {
        CastVisitor_T<ElementType> oCast;
        m_pImp->Accept(oCast);
        if (oCast.m_pElement) {
            return *oCast.m_pElement;
        }
    }
    auto* pImp = new Imp_T<ElementType>;
    delete std::exchange(m_pImp, pImp);
    return pImp->m_Element;
}

template<class ElementType, class>
bool UnknownElement::operator==(const ElementType& element) const
{
    const ElementType* pElement = CastOrNull<ElementType>();
    return pElement && *pElement == element;
}

template const Object* UnknownElement::CastOrNull<Object>() const;
template const Array* UnknownElement::CastOrNull<Array>() const;
template const Number* UnknownElement::CastOrNull<Number>() const;
template const String* UnknownElement::CastOrNull<String>() const;
template const Boolean* UnknownElement::CastOrNull<Boolean>() const;
template const Null* UnknownElement::CastOrNull<Null>() const;

template const Object& UnknownElement::CastTo<Object>() const;
template const Array& UnknownElement::CastTo<Array>() const;
template const Number& UnknownElement::CastTo<Number>() const;
template const String& UnknownElement::CastTo<String>() const;
template const Boolean& UnknownElement::CastTo<Boolean>() const;
template const Null& UnknownElement::CastTo<Null>() const;

template Object& UnknownElement::ConvertTo<Object>();
template Array& UnknownElement::ConvertTo<Array>();
template Number& UnknownElement::ConvertTo<Number>();
template String& UnknownElement::ConvertTo<String>();
template Boolean& UnknownElement::ConvertTo<Boolean>();
template Null& UnknownElement::ConvertTo<Null>();

template bool UnknownElement::operator==<Object>(const Object& element) const;
template bool UnknownElement::operator==<Array>(const Array& element) const;
template bool UnknownElement::operator==<Number>(const Number& element) const;
template bool UnknownElement::operator==<String>(const String& element) const;
template bool UnknownElement::operator==<Boolean>(const Boolean& element) const;
template bool UnknownElement::operator==<Null>(const Null& element) const;

UnknownElement::operator const Object&() const
{
    return CastTo<Object>();
}

UnknownElement::operator const Array&() const
{
    return CastTo<Array>();
}

UnknownElement::operator const Number&() const
{
    return CastTo<Number>();
}

UnknownElement::operator const String&() const
{
    return CastTo<String>();
}

UnknownElement::operator const Boolean&() const
{
    return CastTo<Boolean>();
}

UnknownElement::operator const Null&() const
{
    return CastTo<Null>();
}

UnknownElement::operator Object&()
{
    return ConvertTo<Object>();
}

UnknownElement::operator Array&()
{
    return ConvertTo<Array>();
}

UnknownElement::operator Number&()
{
    return ConvertTo<Number>();
}

UnknownElement::operator String&()
{
    return ConvertTo<String>();
}

UnknownElement::operator Boolean&()
{
    return ConvertTo<Boolean>();
}

UnknownElement::operator Null&()
{
    return ConvertTo<Null>();
}

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

Array::Array(const Array& other)
{
    TreeCopier().Copy(other, *this);
}

Array::~Array()
{
    EraseTree(*this, m_Elements);
}

Array& Array::operator=(const Array& other)
{
    if (this != &other) {
        *this = Array(other);
    }
    return *this;
}

Array& Array::operator=(Array&& other) noexcept
{
    Array oTaken(std::move(other));
    m_Elements.swap(oTaken.m_Elements);
    return *this;
}

Array::iterator Array::Insert(UnknownElement element)
{
    return Insert(std::move(element), End());
}

Array::iterator Array::Insert(UnknownElement element, iterator where)
{
    return m_Elements.insert(where, std::move(element));
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
    if (nIndex >= m_Elements.size()) {
        throw Exception("Array out of bounds");
    }
    return m_Elements[nIndex];
}

bool Array::operator==(const Array& other) const
{
    return TreeComparer().Compare(*this, other);
}

Object::Object(const Object& other)
{
    TreeCopier().Copy(other, *this);
}

Object::~Object()
{
    EraseTree(*this, m_Members);
}

Object& Object::operator=(const Object& other)
{
    if (this != &other) {
        *this = Object(other);
    }
    return *this;
}

Object& Object::operator=(Object&& other) noexcept
{
    Object oTaken(std::move(other));
    m_Members.swap(oTaken.m_Members);
    return *this;
}

Object::iterator Object::Find(const std::string& sName)
{
    return std::find_if(Begin(), End(), [&sName](const Member& member) { return member.name == sName; });
}

Object::const_iterator Object::Find(const std::string& sName) const
{
    return std::find_if(Begin(), End(), [&sName](const Member& member) { return member.name == sName; });
}

Object::iterator Object::Insert(Member member)
{
    return Insert(std::move(member), End());
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

bool Object::operator==(const Object& other) const
{
    return TreeComparer().Compare(*this, other);
}

} // namespace json
