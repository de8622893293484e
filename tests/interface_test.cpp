// The interfaces between C and C++, and late binding.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "automation/create.h"
#include "automation/dispatch.h"
#include "automation/server.h"
#include "automation/text.h"
#include "classes/registration.h"
#include "failure_number.h"
#include "interface_layout.h"
#include "temporary_folder.h"

namespace {

using namespace automation;

// An object with every kind of member and parameter.
class Till final : public Object<Automation_Dispatch> {
public:
    static constexpr Identity Class_Identity{1, 2, 3, {4}};

    Status Get_Member_Identities(const Automation_Name* names, std::uint32_t count,
                                 Long* identities) override {
        return Find_Members(u"Till", Members(), names, count, identities);
    }
    Status Invoke(Long member, std::uint16_t kind, const Automation_Arguments* arguments,
                  Automation_Variant* result, std::uint32_t* wrong_argument) override {
        return Invoke_Member(u"Till", Members(), *this, member, kind, arguments, result, wrong_argument);
    }

private:
    using Member = Dispatch_Member<Till>;
    static Status Sum(Till&, Variant* values, Variant& result) {
        result = Variant(values[0].To_Text() + u"*" + values[1].To_Text() + u"=" + values[2].To_Text());
        return Status_OK;
    }
    static Status Swap(Till&, Variant* values, Variant&) {
        std::swap(values[0], values[1]);
        return Status_OK;
    }
    static Status Change(Till&, Variant* values, Variant&) {
        values[0] = values[0].To_Double() * 2;
        values[1] = values[1].To_Text() + u"!";
        values[2] = Variant::Boolean(!values[2].To_Boolean());
        return Status_OK;
    }
    static Status Get_Name(Till& till, Variant*, Variant& result) {
        result = Variant(till.name);
        return Status_OK;
    }
    static Status Put_Name(Till& till, Variant* values, Variant&) {
        till.name = values[0].To_Text();
        return Status_OK;
    }
    static const std::vector<Member>& Members() {
        constexpr Variant_Type number = Variant_Type::Long, text = Variant_Type::Text;
        static const Parameter count{u"Count", Variant_Type::Integer, true, 2}, label{u"Label", text, true},
            one{u"One", number, false, 0, true}, two{u"Two", number, false, 0, true},
            rate{u"Rate", Variant_Type::Double, false, 0, true}, title{u"Title", text, false, 0, true},
            open{u"Open", Variant_Type::Boolean, false, 0, true};
        static const std::vector<Member> members{
            {u"Sum", 7, AUTOMATION_METHOD, {{u"Price", number}, count, label}, Sum},
            {u"Swap", 8, AUTOMATION_METHOD, {one, two}, Swap},
            {u"Change", 9, AUTOMATION_METHOD, {rate, title, open}, Change},
            {u"Name", 10, AUTOMATION_PROPERTY_GET, {}, Get_Name},
            {u"Name", 10, AUTOMATION_PROPERTY_PUT, {{u"New_Name", text}}, Put_Name}};
        return members;
    }

    String name = u"first";
};

const Server_Class Classes[] = {
    {u"Test.Till", Till::Class_Identity, [] { return Reference<Unknown>(Make_Object<Till>()); }}};

struct Named {
    String_View Name;
    Variant Value;
};
constexpr std::uint16_t Method = AUTOMATION_METHOD, Get = AUTOMATION_PROPERTY_GET,
                        Put = AUTOMATION_PROPERTY_PUT;

// A call by name: the result as a text, or "!number@wrong argument".
std::string Called(Automation_Dispatch& object, std::uint16_t kind, String_View member,
                   const std::vector<Variant>& values = {}, const std::vector<Named>& named = {}) {
    std::vector<Automation_Name> names{{member.data(), static_cast<std::uint32_t>(member.size())}};
    std::vector<Automation_Variant> records;
    for (const Variant& value : values)
        records.push_back(value.Record());
    for (const Named& argument : named) {
        names.push_back({argument.Name.data(), static_cast<std::uint32_t>(argument.Name.size())});
        records.push_back(argument.Value.Record());
    }
    const auto count = static_cast<std::uint32_t>(named.size());
    std::vector<Long> identities(names.size());
    std::uint32_t wrong = 99;
    Automation_Variant result{};
    Status status = object.Get_Member_Identities(names.data(), count + 1, identities.data());
    const Automation_Arguments arguments{records.data(), identities.data() + 1,
                                         static_cast<std::uint32_t>(records.size()), count};
    if (status >= 0)
        status = object.Invoke(identities[0], kind, &arguments, &result, &wrong);
    if (status >= 0)
        return To_UTF8(Variant::Adopt(result).To_Text());
    const auto error = Take_Error();
    EXPECT_TRUE(error && Status_Of(error->Number) == status &&
                error->Description == Description_Of(error->Number));
    return "!" + std::to_string(error ? error->Number : 0) + (wrong == 99 ? "" : "@" + std::to_string(wrong));
}

Variant Missing() {
    Automation_Variant record{};
    record.Type = Automation_Missing;
    return Variant::Adopt(record);
}
Variant By_Reference(std::uint16_t type, void* value) {
    Automation_Variant record{};
    record.Type = type | Automation_By_Reference;
    record.As_Reference = value;
    return Variant::Adopt(record);
}

class Interfaces : public testing::Test {
protected:
    Interfaces() { setenv("XDG_DATA_HOME", folder.String().c_str(), 1); }
    ~Interfaces() override { EXPECT_EQ(Live_Objects(), 0); }

    static Reference<style_node::_Busyness_Rules> Editor() {
        for (const char* module : {COMPONENT, STAND_INS})
            classes::Offer_Classes_Of(module);
        return Create_Bound<style_node::_Busyness_Rules>(style_node::_Busyness_Rules::Program_Identity);
    }
    const Temporary_Folder folder;
};

TEST_F(Interfaces, Have_The_Same_Identities_In_C_And_CPP) {
    using namespace interfaces;
    const Identity* const in_cpp[] = {&Unknown::Interface_Identity,
                                      &Automation_Dispatch::Interface_Identity,
                                      &Automation_Class_Object::Interface_Identity,
                                      &style_node::_Busyness_Rules::Interface_Identity,
                                      &Store_Keeper::Interface_Identity,
                                      &Store_History::Interface_Identity,
                                      &Store_Records::Interface_Identity,
                                      &SR::Interface_Identity,
                                      &NODES::Interface_Identity,
                                      &DETAIL::Interface_Identity,
                                      &CONFIG::Interface_Identity,
                                      &UDNODES::Interface_Identity,
                                      &DELNODES::Interface_Identity,
                                      &INSNODES::Interface_Identity,
                                      &Message_Box::Interface_Identity,
                                      &Label_Checker::Interface_Identity};
    std::size_t at = 0;
    for (const Named_Identity* row = Identities_In_C; row->Text; ++row, ++at) {
        const Identity& id = *row->Identity;
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", id.A,
                      id.B, id.C, id.D[0], id.D[1], id.D[2], id.D[3], id.D[4], id.D[5], id.D[6], id.D[7]);
        EXPECT_STREQ(text.data(), row->Text);
        EXPECT_TRUE(at < std::size(in_cpp) && Equal(id, *in_cpp[at])) << row->Text;
    }
    EXPECT_EQ(at, std::size(in_cpp));
}

TEST_F(Interfaces, Are_Called_From_C_And_Answered_By_C) {
    const auto editor = Editor();
    Editor_In_C seen{};
    EXPECT_EQ(Use_Editor_In_C(editor.Get(), &seen), Status_OK);
    EXPECT_EQ(seen.Shown, AUTOMATION_FALSE);
    EXPECT_EQ(seen.Code, 6);
    EXPECT_STREQ(seen.Description, "Overflow");
    EXPECT_EQ(seen.Blind, AUTOMATION_TRUE);
    EXPECT_EQ(seen.Default_Node, AUTOMATION_TRUE);

    using interfaces::Label_Checker;
    const auto checker = Reference<Unknown>::Adopt(static_cast<Unknown*>(Checker_In_C()));
    {
        const auto bound = Bind<Label_Checker>(checker);
        for (const auto& [label, wanted] :
             {std::pair(u"abc", AUTOMATION_TRUE), {u"abcd", AUTOMATION_FALSE}}) {
            Automation_Boolean allowed = 7;
            EXPECT_EQ(bound->Is_Label_Allowed(Variant(label), allowed), Status_OK);
            EXPECT_EQ(allowed, wanted);
        }
        Automation_Boolean allowed = 7;
        EXPECT_EQ(Failure_Number([&] { Check(bound->Is_Label_Allowed(Variant(Long{1}), allowed)); }), 13);
        Variant prepared;
        Check(bound->Prepare_Label(Variant(u"label"), prepared));
        EXPECT_EQ(prepared.To_Text(), u"label");
        EXPECT_EQ(Failure_Number([&] { Bind<interfaces::SR>(checker); }), 430);
        checker->Add_Reference();
        EXPECT_EQ(checker->Release(), 2U);
    }
    checker->Add_Reference();
    EXPECT_EQ(checker->Release(), 1U);
}

TEST_F(Interfaces, Are_Called_By_Name) {
    const auto till = Make_Object<Till>();
    const auto editor = Editor();
    const Variant null = Variant::Null(), one(Long{1}), word(u"word"), language(Long{557});
    const struct {
        Automation_Dispatch& Object;
        std::uint16_t Kind;
        String_View Member;
        std::vector<Variant> Values;
        std::vector<Named> Named_Values;
        const char* Outcome;
    } cases[] = {
        {*till, Method, u"Sum", {one}, {}, "1*2=0"},
        {*till, Method, u"sUM", {u"5", 2.5, word}, {}, "5*2=word"},
        {*till, Method, u"Sum", {one, Missing(), word}, {}, "1*2=word"},
        {*till, Method, u"Sum", {one}, {{u"LABEL", word}, {u"count", one}}, "1*1=word"},
        {*till,
         Method | Get,
         u"Sum",
         {},
         {{u"Label", word}, {u"Price", one}, {u"Count", Missing()}},
         "1*2=word"},
        {*till, Method, u"Sum", {}, {}, "!449@0"},
        {*till, Method, u"Sum", {Missing(), one}, {}, "!449@2"},
        {*till, Method, u"Sum", {one, one, one, one}, {}, "!450@3"},
        {*till, Method, u"Sum", {one}, {{u"Price", one}}, "!450@1"},
        {*till, Method, u"Sum", {one}, {{u"Prices", one}}, "!448"},
        {*till, Method, u"Sum", {one, word}, {}, "!13@1"},
        {*till, Method, u"Sum", {one}, {{u"Label", one}, {u"Count", Variant(Long{40000})}}, "!6@2"},
        {*till, Method, u"Sum", {null}, {}, "!94@0"},
        {*till, Method, u"Sums", {one}, {}, "!438"},
        {*till, Method, u"", {one}, {}, "!438"},
        {*till, Get, u"Sum", {one}, {}, "!438@0"},
        {*till, Put, u"Sum", {one}, {}, "!438@0"},
        {*till, Put, u"name", {word}, {}, ""},
        {*till, Get, u"NAME", {}, {}, "word"},
        {*till, Method, u"Name", {}, {}, "!438@0"},
        {*till, Get, u"Name", {one}, {}, "!450@0"},
        {*till, Put, u"Name", {}, {}, "!449@0"},
        {*till, Put, u"Name", {}, {{u"New_Name", one}}, ""},
        {*till, Get, u"Name", {}, {}, "1"},
        {*editor, Method, u"shown", {one, one, one}, {{u"language_id", language}}, "False"},
        {*editor, Get, u"errcode", {}, {}, "6"},
        {*editor, Method, u"ErrDescription", {}, {}, "Overflow"},
        {*editor, Put, u"SupervisedType_Blind", {u"True"}, {}, ""},
        {*editor, Get, u"SupervisedType_Blind", {}, {}, "True"},
        {*editor, Put, u"ErrCode", {one}, {}, "!438@0"},
        {*editor, Method, u"Shown", {one, one}, {}, "!449@2"},
        {*editor, Method, u"Shown", {one, Variant(Long{-32769}), one}, {}, "!6@1"},
        {*editor, Method, u"Shown", {one, one, one, one, word}, {}, "!13@4"},
        {*editor, Get, u"ErrCode", {}, {}, "6"}, // none of the refused calls has begun
    };
    for (const auto& row : cases)
        EXPECT_EQ(Called(row.Object, row.Kind, row.Member, row.Values, row.Named_Values), row.Outcome)
            << &row - cases << " " << To_UTF8(row.Member);
    EXPECT_EQ(till->Invoke(7, Method, nullptr, nullptr, nullptr), AUTOMATION_RUN_TIME(449));
    EXPECT_EQ(till->Invoke(11, Method, nullptr, nullptr, nullptr), AUTOMATION_RUN_TIME(438));
}

TEST_F(Interfaces, Write_References_Back) {
    const auto till = Make_Object<Till>();
    std::int32_t one = 1, two = 2;
    std::int16_t small = 3, open = AUTOMATION_FALSE;
    double rate = 1.5;
    Automation_Block* name = Automation_New_Text(u"Ann", 3);
    const Variant first = By_Reference(Automation_Long, &one), second = By_Reference(Automation_Long, &two);
    EXPECT_EQ(Called(*till, Method, u"Swap", {first}, {{u"Two", second}}), "");
    EXPECT_EQ(std::pair(one, two), std::pair(2, 1));
    EXPECT_EQ(Called(*till, Method, u"Swap", {first, By_Reference(Automation_Integer, &small)}), "");
    EXPECT_EQ(std::pair(one, small), (std::pair<std::int32_t, std::int16_t>(3, 3)))
        << "another type stays as it is";
    EXPECT_EQ(Called(*till, Method, u"Change",
                     {By_Reference(Automation_Double, &rate), By_Reference(Automation_Text, &name),
                      By_Reference(Automation_Truth, &open)}),
              "");
    EXPECT_EQ(rate, 3.0);
    EXPECT_EQ(Text::Adopt(name).View(), u"Ann!");
    EXPECT_EQ(open, AUTOMATION_TRUE);
    Set_Error(Failure(438, u"of an earlier call, never taken"));
    EXPECT_EQ(Called(*till, Method, u"Swap", {By_Reference(Automation_Long, nullptr), second}), "!5@0");
    EXPECT_EQ(two, 1);
}

} // namespace

AUTOMATION_SERVER(Classes)

namespace {

TEST_F(Interfaces, Are_Made_By_Class_Objects) {
    void* found = this;
    constexpr Identity unknown_class{9, 9, 9, {}};
    const Identity& class_object = Automation_Class_Object::Interface_Identity;
    EXPECT_EQ(DllGetClassObject(&unknown_class, &class_object, &found), AUTOMATION_NO_CLASS);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(DllGetClassObject(&Till::Class_Identity, &Automation_Dispatch::Interface_Identity, &found),
              AUTOMATION_NO_INTERFACE);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(DllCanUnloadNow(), AUTOMATION_OK);
    ASSERT_EQ(DllGetClassObject(&Till::Class_Identity, &class_object, &found), AUTOMATION_OK);
    auto made_by = Reference<Automation_Class_Object>::Adopt(static_cast<Automation_Class_Object*>(found));
    EXPECT_EQ(made_by->Create_Instance(&class_object, &found), AUTOMATION_RUN_TIME(430));
    EXPECT_EQ(found, nullptr);
    Check(made_by->Create_Instance(&Automation_Dispatch::Interface_Identity, &found));
    auto till = Reference<Automation_Dispatch>::Adopt(static_cast<Automation_Dispatch*>(found));
    EXPECT_EQ(Called(*till, Get, u"Name"), "first");
    Check(made_by->Lock(AUTOMATION_TRUE));
    till = nullptr;
    made_by = nullptr;
    EXPECT_EQ(DllCanUnloadNow(), AUTOMATION_NO) << "locked";
    Check(DllGetClassObject(&Till::Class_Identity, &class_object, &found));
    made_by = Reference<Automation_Class_Object>::Adopt(static_cast<Automation_Class_Object*>(found));
    Check(made_by->Lock(AUTOMATION_FALSE));
    made_by = nullptr;
    EXPECT_EQ(DllCanUnloadNow(), AUTOMATION_OK);
}

} // namespace
