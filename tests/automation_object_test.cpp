// Counted objects, variants and class objects.
#include <gtest/gtest.h>

#include <functional>
#include <iomanip>
#include <sstream>

#include "automation/text.h"
#include "automation/variant.h"
#include "classes/class_table.h"
#include "failure_number.h"

namespace {

using namespace automation;

template <std::uint8_t number>
class Readable : public Unknown {
public:
    static constexpr Identity Interface_Identity{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, number}};
    virtual Long Read() const = 0;

protected:
    ~Readable() = default;
};
using Reader = Readable<11>;
using Other_Reader = Readable<12>;

class Cell final : public Object<Reader, Other_Reader> {
public:
    explicit Cell(Long value) : value(value) {}
    Long Read() const override { return value; }

private:
    const Long value;
};

std::uint32_t Count_Of(Cell& object) {
    object.Add_Reference();
    return object.Release();
}

// Nothing that a test makes outlives it.
class Objects : public testing::Test {
protected:
    ~Objects() override { EXPECT_EQ(Live_Objects(), before); }
    const std::int64_t before = Live_Objects();
};

TEST_F(Objects, Are_Counted) {
    auto cell = Make_Object<Cell>(7);
    EXPECT_EQ(Count_Of(*cell), 1U);
    {
        const Reference<Reader> reader = cell; // to a base
        Reference<Cell> copy = cell;
        copy = *&copy; // to itself
        EXPECT_EQ(Count_Of(*cell), 3U);
        const Reference<Cell> moved = std::move(copy);
        EXPECT_FALSE(copy); // NOLINT: a moved reference is unset
        EXPECT_EQ(Count_Of(*cell), 3U);
    }
    EXPECT_EQ(Count_Of(*cell), 1U);
    const auto also = Reference<Cell>::To(*cell);
    cell = nullptr;
    EXPECT_EQ(also->Read(), 7);
    EXPECT_EQ(Live_Objects(), before + 1);
}

TEST_F(Objects, Offer_Their_Interfaces) {
    const auto cell = Make_Object<Cell>(7);
    const Reference<Unknown> object = Reference<Reader>(cell);
    const auto other = Bind<Other_Reader>(object);
    EXPECT_EQ(other.Get(), static_cast<Other_Reader*>(cell.Get()));
    EXPECT_EQ(Bind<Reader>(Reference<Unknown>(other)).Get(), static_cast<Reader*>(cell.Get()));
    // One object has one address as Unknown, whatever it is asked through.
    EXPECT_EQ(Bind<Unknown>(Reference<Unknown>(other)).Get(), Bind<Unknown>(object).Get());
    for (const Identity wanted : {Identity{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 13}}, Identity{}}) {
        void* found = cell.Get();
        EXPECT_EQ(cell->Query_Interface(wanted, &found), Status_No_Interface);
        EXPECT_EQ(found, nullptr);
    }
}

TEST_F(Objects, Unset_References_Fail) {
    const Reference<Reader> unset;
    const std::function<void()> uses[] = {[&] { (void)unset->Read(); }, [&] { (void)*unset; },
                                          [] { Bind<Reader>(nullptr); },
                                          [] { Variant(Reference<Unknown>()).To_Object()->Add_Reference(); }};
    for (const auto& use : uses)
        EXPECT_EQ(Failure_Number(use), 91) << &use - uses;
}

// Its type, and as a text, a double, an Integer, a Long, a Boolean and an object.
std::string Summary(const Variant& value) {
    const auto as_double = [&] {
        std::ostringstream digits;
        digits << std::setprecision(12) << value.To_Double();
        return From_UTF8(digits.str()).value();
    };
    return std::to_string(static_cast<int>(value.Type())) + " " + Outcome([&] { return value.To_Text(); }) +
           " " + Outcome(as_double) + " " + Outcome([&] { return value.To_Integer(); }) + " " +
           Outcome([&] { return value.To_Long(); }) + " " + Outcome([&] { return value.To_Boolean(); }) +
           " " + Outcome([&] { return value.To_Object() ? 1 : 0; });
}

TEST_F(Objects, In_Variants_And_All_Other_Values_Convert) {
    std::pair<Variant, const char*> cases[] = {
        {Variant(), "0  0 0 0 0 !13"},
        {Variant::Null(), "1 !94 !94 !94 !94 !94 !13"},
        {Variant(Integer{-32768}), "2 -32768 -32768 -32768 -32768 1 !13"},
        {Variant(Long{40000}), "3 40000 40000 !6 40000 1 !13"},
        {Variant(0.1F), "4 0.1 0.10000000149 0 0 1 !13"},
        {Variant(1e20), "5 1E+20 1e+20 !6 !6 1 !13"},
        {Variant::Currency(-12345000), "6 -1234.5 -1234.5 -1234 -1234 1 !13"},
        {Variant::Date(36526.75), "7 1/1/2000 6:00:00 PM 36526.75 !6 36527 1 !13"},
        {Variant::Date(36526.999999), "7 1/2/2000 36526.999999 !6 36527 1 !13"},
        {Variant::Date(2958465.5), "7 12/31/9999 12:00:00 PM 2958465.5 !6 2958466 1 !13"},
        {Variant::Date(2958466), "7 !6 2958466 !6 2958466 1 !13"},
        {Variant::Date(1e300), "7 !6 1e+300 !6 !6 1 !13"},
        {Variant(-0.0), "5 0 -0 0 0 0 !13"},
        {Variant(u"1,5-"), "8 1,5- -15 -15 -15 1 !13"},
        {Variant(u""), "8  !13 !13 !13 !13 !13"},
        {Variant(Reference<Unknown>()), "9 !13 !13 !13 !13 !13 0"},
        {Variant(Reference<Unknown>(Reference<Reader>(Make_Object<Cell>(7)))), "9 !13 !13 !13 !13 !13 1"},
        {Variant::Boolean(true), "11 True -1 -1 -1 1 !13"},
        {Variant::Boolean(false), "11 False 0 0 0 0 !13"},
        {Variant::Byte(255), "17 255 255 255 255 1 !13"},
        {Variant(std::int64_t{-3000000000}), "20 -3000000000 -3000000000 !6 !6 1 !13"},
        {Variant::Bytes({1, 2, 3}), "8209 !13 !13 !13 !13 !13 !13"}};
    for (auto& [value, summary] : cases) {
        Variant copy = value;
        copy = *&copy;
        const Variant moved = std::move(copy);
        EXPECT_EQ(copy.Type(), Variant_Type::Empty) << summary; // NOLINT: a moved variant is empty
        copy = u"something else";
        copy = moved;
        EXPECT_EQ(Summary(value), summary);
        value = Variant();
        EXPECT_EQ(Summary(copy), summary) << "copied, moved and assigned";
    }
}

class Classes : public Objects {
protected:
    static constexpr Identity Class_Identity{7, 7, 7, {1}};
    ~Classes() override { classes::Revoke_Class(u"Test.Cell"); }

    static void Register(const char16_t* name, const Identity& identity, Long value) {
        classes::Provide_Class(
            {name, identity, [value] { return Reference<Reader>(Make_Object<Cell>(value)); }});
    }
    static Long Value(String_View name) { return Create_Bound<Reader>(name)->Read(); }
};

TEST_F(Classes, Are_Found_By_Name_And_By_Identity) {
    Register(u"Test.Cell", Class_Identity, 1);
    EXPECT_EQ(Value(u"tEST.cELL"), 1);
    EXPECT_EQ(Bind<Reader>(Create_Object(Class_Identity))->Read(), 1);
    for (const String_View name : {u"", u"Test", u"Test.Cells", u"Test.Cel"})
        EXPECT_EQ(Failure_Number([&] { Create_Object(name); }), 429) << To_UTF8(name);
    Register(u"TEST.Cell", Identity{8, 8, 8, {}}, 2); // replaces
    EXPECT_EQ(Value(u"Test.Cell"), 2);
    EXPECT_EQ(Failure_Number([] { Create_Object(Class_Identity); }), 429);
    classes::Revoke_Class(u"TEST.CELL");
    EXPECT_EQ(Failure_Number([] { Value(u"Test.Cell"); }), 429);
    EXPECT_EQ(Failure_Number([] { Create_Object(Identity{8, 8, 8, {}}); }), 429);
}

TEST_F(Classes, Fail_As_Their_Creation_Does) {
    class Other final : public Object<Other_Reader> {
        Long Read() const override { return 0; }
    };
    const std::pair<std::function<Reference<Unknown>()>, Long> cases[] = {
        {nullptr, 429},
        {[] { return nullptr; }, 429},
        {[]() -> Reference<Unknown> { Raise(70); }, 70},
        {[] { return Reference<Other_Reader>(Make_Object<Other>()); }, 430}};
    for (const auto& [create, failure] : cases) {
        classes::Provide_Class({u"Test.Cell", Class_Identity, create});
        EXPECT_EQ(Failure_Number([] { Value(u"Test.Cell"); }), failure);
    }
}

} // namespace
