#include "jsontext.h"

#include <QtTest>

using namespace json;

namespace {

template<class Function>
std::string messageOf(Function fn)
{
    try {
        fn();
    } catch (const Exception& e) {
        return e.what();
    }
    return "no exception";
}

// Builds arrays and objects that hold each other by turns; a copy at each level would take ages.
UnknownElement nest(int nPairs, UnknownElement oInnermost)
{
    for (int n = 0; n < nPairs; ++n) {
        Array oArray;
        oArray.Insert(std::move(oInnermost));
        Object oObject;
        oObject["a"] = std::move(oArray);
        oInnermost = std::move(oObject);
    }
    return oInnermost;
}

} // namespace

class ElementsTest : public QObject
{
    Q_OBJECT

private slots:
    void comparesByKindAndValue()
    {
        QVERIFY(UnknownElement() == UnknownElement() && UnknownElement() == Null() &&
                Null() == UnknownElement());
        QVERIFY(!(UnknownElement(Number(1)) == UnknownElement(Boolean(true))));
        // Neither way round may a comparison go through the conversions, which discard.
        UnknownElement oElement(Number(1));
        QVERIFY(!(Null() == oElement) && !(String() == oElement) && !(oElement == Object()));
        QVERIFY(Number(1) == oElement);
        QVERIFY(UnknownElement(String("a")) == String("a") && !(UnknownElement(String("a")) == String("b")));

        // With plain values, of convertible types too, on either side.
        QVERIFY(Number(1) == 1.0 && Number(1) == 1 && 1.0 == Number(1) && !(Number(1) == 2));
        QVERIFY(Boolean(true) == true && !(false == Boolean(true)) && oElement.CastTo<Number>() == 1.0);
        QVERIFY(String("a") == "a" && !("b" == String("a")) && String("a") == std::string("a"));

        const Object oOne = readText(R"({"a":1,"b":[{},[2]]})");
        QVERIFY(oOne == readText(R"({"a":1,"b":[{},[2]]})"));
        for (const char* szOther :
             {R"({"b":[{},[2]],"a":1})", R"({"a":1,"b":[{},[3]]})", R"({"a":1,"b":[[],[2]]})",
              R"({"a":1,"b":[{},[2,2]]})", R"({"a":1})", R"({"a":1,"c":[{},[2]]})", R"({"a":1,"b":{}})",
              R"({"a":true,"b":[{},[2]]})"}) {
            QVERIFY2(!(oOne == readText(szOther)), szOther);
            QVERIFY2(!(readText(szOther) == oOne), szOther);
        }
    }

    void castsConvertsAndMoves()
    {
        UnknownElement oElement(Number(3));
        const UnknownElement& oConstant = oElement;
        QCOMPARE(oConstant.CastTo<Number>().Value(), 3.0);
        QCOMPARE(messageOf([&] { oConstant.CastTo<String>(); }), std::string("Bad cast"));

        QCOMPARE(&oElement.ConvertTo<Number>(), &oConstant.CastTo<Number>());
        oElement.ConvertTo<Number>().Value() = 4;
        QVERIFY(oElement == Number(4));
        QVERIFY(oElement.ConvertTo<String>() == String() && oElement == String());
        Array& oArray = oElement;
        QVERIFY(oArray.Empty());
        const bool bValue = oElement.ConvertTo<Boolean>();
        QVERIFY(!bValue && oElement.ConvertTo<Null>() == Null());

        UnknownElement oSource(String("x"));
        const UnknownElement oTarget(std::move(oSource));
        QVERIFY(oTarget == String("x"));
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        QVERIFY(oSource == Null() && UnknownElement(oSource) == oSource);
        oSource = Number(1);
        QVERIFY(oSource == Number(1));
    }

    void assignsItselfAndDescendants()
    {
        Object oObject = readText(R"({"a":{"b":{"c":1}}})");
        const Object& oSame = oObject;
        oObject = oSame;
        QCOMPARE(writeText(oObject), std::string(R"({"a" : {"b" : {"c" : 1}}})"));
        const Object oCopy(oObject);
        oObject = oObject["a"].ConvertTo<Object>();
        QCOMPARE(writeText(oObject), std::string(R"({"b" : {"c" : 1}})"));
        oObject = std::move(oObject["b"].ConvertTo<Object>());
        oObject["c"].ConvertTo<Number>().Value() = 2;
        QCOMPARE(writeText(oObject), std::string(R"({"c" : 2})"));
        QCOMPARE(writeText(oCopy), std::string(R"({"a" : {"b" : {"c" : 1}}})"));

        Array oArray;
        oArray[0] = Array();
        oArray[0].ConvertTo<Array>()[0] = String("x");
        const Array& oSameArray = oArray;
        oArray = oSameArray;
        oArray[1] = oArray;
        oArray = std::move(oArray[1].ConvertTo<Array>());
        oArray = oArray[0].ConvertTo<Array>();
        QVERIFY(oArray.Size() == 1 && oArray[0] == String("x"));

        UnknownElement oElement(readText(R"({"a":["x"]})"));
        const UnknownElement& oSameElement = oElement;
        oElement = oSameElement;
        oElement = oElement.ConvertTo<Object>()["a"];
        oElement = std::move(oElement.ConvertTo<Array>()[0]);
        QVERIFY(oElement == String("x"));
    }

    void objectKeepsNamesUnique()
    {
        Object oObject;
        oObject["x"];
        QCOMPARE(oObject.Insert({"y", Number(2)})->name, std::string("y"));
        QCOMPARE(oObject.Insert(Object::Member("a"), oObject.Begin())->name, std::string("a"));
        oObject["x"] = Number(1);
        QCOMPARE(messageOf([&] { oObject.Insert(Object::Member("x")); }),
                 std::string("Object member already exists: x"));
        QCOMPARE(writeText(oObject), std::string(R"({"a" : null,"x" : 1,"y" : 2})"));
        const Object& oConstant = oObject;
        QVERIFY(oConstant.Find("y")->element == Number(2) && oConstant.Find("X") == oConstant.End());
        QVERIFY(oObject.Find(std::string("x\0", 2)) == oObject.End());
    }

    void arrayGrowsAndGuardsItsEnd()
    {
        Object oObject;
        Array& oArray = oObject["a"];
        oArray[3] = Number(3);
        const Array& oConstant = oArray;
        QVERIFY(oConstant[3] == Number(3));
        QCOMPARE(messageOf([&] { oConstant[4]; }), std::string("Array out of bounds"));
        QVERIFY_EXCEPTION_THROWN(oArray[std::size_t(-1)], std::length_error);
        QVERIFY(*oArray.Insert(Number(0), oArray.Begin()) == Number(0));
        QVERIFY(*oArray.Insert(Number(5)) == Number(5));
        QCOMPARE(writeText(oObject), std::string(R"({"a" : [0,null,null,null,3,5]})"));
    }

    void deepTreesCostNoStack()
    {
        constexpr int nPairs = 50000;
        Object oObject;
        oObject["deep"] = nest(nPairs, Number(1));
        Object oCopy(oObject);
        QVERIFY(oCopy == oObject);
        QCOMPARE(writeText(oCopy), writeText(oObject));
        QCOMPARE(writeText(oCopy).size(),
                 std::string(R"({"deep" : 1})").size() + nPairs * std::string(R"({"a" : []})").size());
        oObject["deep"] = nest(nPairs, Number(2));
        QVERIFY(!(oCopy == oObject));
        oCopy = oObject;
        oObject["deep"].ConvertTo<Null>();
        oCopy = Object();
        QVERIFY(oCopy.Empty());
    }
};

QTEST_APPLESS_MAIN(ElementsTest)
#include "tst_elements.moc"
