#include "jsontext.h"

#include <QtTest>

#include <functional>

using namespace json;

namespace {

std::string messageOf(const std::function<void()>& fn)
{
    try {
        fn();
    } catch (const Exception& e) {
        return e.what();
    }
    return "no exception";
}

} // namespace

class ElementsTest : public QObject
{
    Q_OBJECT

private slots:
    void comparesByKindAndValue()
    {
        UnknownElement oElement(Number(1));
        QVERIFY(UnknownElement() == UnknownElement() && UnknownElement() == Null());
        QVERIFY(!(oElement == UnknownElement(Boolean(true))) && !(oElement == Number(2)));
        // Neither way round may a comparison go through the conversions, which discard.
        QVERIFY(!(Null() == oElement) && !(String() == oElement) && !(oElement == Object()));
        QVERIFY(Number(1) == oElement && oElement == Number(1));

        // Plain values of convertible types.
        QVERIFY(Number(1) == 1.0 && Number(1) == 1 && 1.0 == Number(1) && !(Number(1) == 2));
        QVERIFY(Boolean(true) == true && !(false == Boolean(true)) && oElement.CastTo<Number>() == 1.0);
        QVERIFY(String("a") == "a" && !("b" == String("a")) && String("a") == std::string("a"));

        const Object oOne = readText(R"({"a":1,"b":[{},[2]]})");
        QVERIFY(oOne == readText(R"({"a":1,"b":[{},[2]]})"));
        for (const char* szOther : {R"({"b":[{},[2]],"a":1})", R"({"a":1,"b":[{},[3]]})",
                                    R"({"a":1,"b":[[],[2]]})", R"({"a":1,"b":[{},[2,2]]})", R"({"a":1})",
                                    R"({"a":1,"c":[{},[2]]})", R"({"a":true,"b":[{},[2]]})"}) {
            QVERIFY2(!(oOne == readText(szOther)) && !(readText(szOther) == oOne), szOther);
        }
    }

    void castsConvertsAndMoves()
    {
        UnknownElement oElement(Number(3));
        const UnknownElement& oConstant = oElement;
        QVERIFY(oConstant.CastTo<Number>() == 3 && !oConstant.CastOrNull<String>());
        QCOMPARE(messageOf([&] { oConstant.CastTo<String>(); }), std::string("Bad cast"));
        oElement.ConvertTo<Number>().Value() += 1;
        QVERIFY(oElement == Number(4));
        Array& oArray = oElement;
        QVERIFY(oArray.Empty() && oElement.ConvertTo<Null>() == Null());

        UnknownElement oSource(String("x"));
        const UnknownElement oTarget(std::move(oSource));
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        QVERIFY(oTarget == String("x") && oSource == Null() && UnknownElement(oSource) == oSource);
    }

    void copiesAreDeepAndMayBeOfDescendants()
    {
        Object oObject = readText(R"({"a":{"b":{"c":["x"]}}})");
        const Object oCopy(oObject);
        oObject = oObject["a"].ConvertTo<Object>();
        oObject = std::move(oObject["b"].ConvertTo<Object>());
        Array& oArray = oObject["c"];
        oArray[1] = oArray;
        oArray = oArray[1].ConvertTo<Array>();
        oObject["c"] = oArray[0];
        QCOMPARE(writeText(oObject), std::string(R"({"c" : "x"})"));
        QCOMPARE(writeText(oCopy), std::string(R"({"a" : {"b" : {"c" : ["x"]}}})"));
    }

    void objectKeepsNamesUnique()
    {
        Object oObject;
        oObject["x"];
        QCOMPARE(oObject.Insert({"y", Number(2)})->name, std::string("y"));
        QCOMPARE(oObject.Insert({"a"}, oObject.Begin())->name, std::string("a"));
        oObject["x"] = Number(1);
        QCOMPARE(messageOf([&] { oObject.Insert({"x"}); }), std::string("Object member already exists: x"));
        QCOMPARE(writeText(oObject), std::string(R"({"a" : null,"x" : 1,"y" : 2})"));
    }

    void arrayGrowsAndGuardsItsEnd()
    {
        Array oArray;
        oArray[2] = Number(3);
        QCOMPARE(messageOf([&] { std::as_const(oArray)[3]; }), std::string("Array out of bounds"));
        QVERIFY_EXCEPTION_THROWN(oArray[std::size_t(-1)], std::length_error);
        QVERIFY(*oArray.Insert(Number(0), oArray.Begin()) == Number(0));
        QVERIFY(*oArray.Insert(Number(5)) == Number(5));
        QVERIFY(oArray == readText(R"({"a":[0,null,null,3,5]})").Begin()->element);
    }

    void deepTrees()
    {
        UnknownElement oInnermost(Number(1));
        for (int nLevel = 0; nLevel < 4000; nLevel += 2) {
            Array oArray;
            oArray.Insert(std::move(oInnermost));
            Object oObject;
            oObject["a"] = std::move(oArray);
            oInnermost = std::move(oObject);
        }
        const Object& oObject = oInnermost.CastTo<Object>();
        Object oCopy(oObject);
        QVERIFY(oCopy == oObject);
        QCOMPARE(writeText(oCopy).size(), 1 + 2000 * std::string(R"({"a" : []})").size());
    }
};

QTEST_APPLESS_MAIN(ElementsTest)
#include "tst_elements.moc"
