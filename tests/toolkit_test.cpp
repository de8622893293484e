// Controls and forms as code uses them: what a write stores, notifies and raises, and the life of a form.
#include "automation/text.h"
#include "toolkit_test_tools.h"

namespace {

using namespace toolkit_test;

TEST_F(Toolkit, Writes_Load_The_Form_Notify_Once_And_Raise) {
    struct {
        std::function<void()> Perform;
        const char* First;  // what the journal says of the write
        const char* Second; // and of the same write once more
    } const writes[] = {
        {[&] { form->text.Set_Text(u"new"); }, "text Text, text_Change", ""},
        {[&] { form->combo.Set_Text(u"new"); }, "combo Text, combo_Change", ""},
        {[&] { form->sized.Set_Caption(u"new"); }, "sized Caption, sized Geometry", ""},
        {[&] { form->ok.Set_Enabled(false); }, "ok Enabled", ""},
        {[&] { form->text.Set_Left(100); }, "text Geometry", ""},
        {[&] { form->combo.Set_Selected_Index(1); }, "combo Text, combo Index, combo_Click", "combo_Click"},
        {[&] { form->list.Set_Selected_Index(2); }, "list Index, list_Click", "list_Click"},
        {[&] { form->combo.Set_Selected_Index(-1); }, "combo_Click", "combo_Click"},
        {[&] { form->list.Clear(); }, "list Items", ""},
        {[&] { form->list.Add_Item(u"1"); }, "list Items", "list Items"},
        {[&] { form->first.Set_Value(true); }, "first Value, first_Click", "first_Click"},
        {[&] { form->first.Set_Value(false); }, "first_Click", "first_Click"},
        {[&] { form->ok.Set_Value(true); }, "ok_Click", "ok_Click"},
        {[&] { form->Set_Caption(u"new"); }, "form Caption", ""}};
    for (const auto& one : writes) {
        SCOPED_TRACE(one.First);
        Load_New_Form();
        EXPECT_EQ(Journal_Of(one.Perform), one.First);
        EXPECT_EQ(Journal_Of(one.Perform), one.Second);
        form->Unload();
        EXPECT_EQ(Journal_Of([&] { EXPECT_THROW(one.Perform(), Form_Gone); }), "");
        EXPECT_FALSE(form->Is_Loaded());
        form = std::make_shared<Sample>(journal);
        EXPECT_EQ(Journal_Of([&] { (void)Failure_Number(one.Perform); }).rfind("loaded"), 0U);
        EXPECT_TRUE(form->Is_Loaded());
    }
}

TEST_F(Toolkit, Reads_Find_A_Form_That_Is_Gone_But_Load_None) {
    const std::function<void()> reads[] = {
        [&] { (void)form->text.Text(); },   [&] { (void)form->combo.Selected_Index(); },
        [&] { (void)form->first.Value(); }, [&] { (void)form->label.Caption(); },
        [&] { (void)form->label.Place(); }, [&] { (void)form->Focused(); }};
    for (const auto& read : reads) {
        form = std::make_shared<Sample>(journal);
        EXPECT_EQ(Journal_Of(read), "") << &read - reads;
        Load_New_Form();
        form->Unload();
        EXPECT_THROW(read(), Form_Gone) << &read - reads;
    }
}

TEST_F(Toolkit, A_Change_Is_Nested_In_The_Write) {
    Load_New_Form();
    // Cuts spaces on the right, then on the left, and remembers; as the fields of a dialog do.
    std::string seen;
    form->text.On_Change = [&] {
        seen += "<" + To_UTF8(form->text.Text());
        form->text.Set_Text(automation::Trim_Right(form->text.Text()));
        form->text.Set_Text(automation::Trim_Left(form->text.Text()));
        form->text.Set_Selection_Start(form->text.Text().size());
        seen += ">" + To_UTF8(form->text.Text());
    };
    form->text.Set_Text(u" 12 ");
    EXPECT_EQ(seen, "< 12 < 12<12>12>12>12");
    EXPECT_EQ(form->text.Selection_Start(), 2U);
}

TEST_F(Toolkit, Caret_Stays_In_The_Text) {
    Load_New_Form();
    form->text.Set_Text(u"abc");
    EXPECT_EQ(form->text.Selection_Start(), 0U);
    EXPECT_EQ(Journal_Of([&] { form->text.Set_Selection_Start(100); }), "text Caret");
    EXPECT_EQ(Journal_Of([&] { form->text.Set_Selection_Start(3); }), "");
    EXPECT_EQ(Journal_Of([&] { form->text.Set_Text(u"abc"); }), "");
    EXPECT_EQ(form->text.Selection_Start(), 3U) << "an unchanged write leaves it";
    form->combo.Set_Text(u"100"); // an entry that equals the text moves the caret alone
    EXPECT_EQ(Journal_Of([&] { form->combo.Set_Selected_Index(1); }),
              "combo Caret, combo Index, combo_Click");
}

TEST_F(Toolkit, Index_And_Text_Of_Lists) {
    Load_New_Form();
    form->combo.Set_Selected_Index(1);
    EXPECT_EQ(form->combo.Text(), u"100");
    EXPECT_EQ(Journal_Of([&] { form->combo.Set_Text(u"200"); }), "combo Index, combo Text, combo_Change");
    EXPECT_EQ(form->combo.Selected_Index(), -1) << "written, not picked";
    form->combo.Set_Selected_Index(0);
    form->combo.Set_Selected_Index(-1);
    EXPECT_EQ(form->combo.Text(), u"");
    EXPECT_EQ(Failure_Number([&] { form->choice.Set_Text(u"200"); }), 380);
    form->list.Set_Selected_Index(0);
    form->list.Clear();
    EXPECT_EQ(form->list.Selected_Index(), -1);
}

TEST_F(Toolkit, Indices_Outside_Are_Refused) {
    Load_New_Form();
    form->combo.Set_Selected_Index(1);
    for (const Long index : {-2147483647 - 1, -2, 3, 2147483647})
        EXPECT_EQ(Failure_Number([&] { form->combo.Set_Selected_Index(index); }), 380) << index;
    EXPECT_EQ(form->combo.Selected_Index(), 1);
    for (const Long index : {-2147483647 - 1, -1, 3, 2147483647}) {
        EXPECT_EQ(Failure_Number([&] { (void)form->combo.Item(index); }), 381) << index;
        EXPECT_EQ(Failure_Number([&] { form->combo.Set_Item_Data(index, 7); }), 381) << index;
    }
}

TEST_F(Toolkit, Sorted_Lists_Keep_Their_Data) {
    Load_New_Form();
    const std::pair<String_View, Long> cases[] = {
        {u"beta", 0}, {u"Alpha", 0}, {u"gamma", 2}, {u"BETA", 2}, {u"", 0}};
    for (const auto& [item, new_index] : cases) {
        form->choice.Add_Item(item);
        EXPECT_EQ(form->choice.New_Index(), new_index) << To_UTF8(item);
        form->choice.Set_Item_Data(new_index, static_cast<Long>(item.size()));
        if (item == u"beta")
            form->choice.Set_Selected_Index(0);
        EXPECT_EQ(form->choice.Text(), u"beta") << "the selected entry moves along";
    }
    std::string all;
    for (Long index = 0; index < form->choice.Count(); ++index)
        all += To_UTF8(form->choice.Item(index)) + std::to_string(form->choice.Item_Data(index)) + " ";
    EXPECT_EQ(all, "0 Alpha5 beta4 BETA4 gamma5 ");
}

TEST_F(Toolkit, One_Option_Of_A_Container_Is_Selected) {
    Load_New_Form();
    form->outside.Set_Value(true);
    form->first.Set_Value(true);
    EXPECT_EQ(Journal_Of([&] { form->second.Set_Value(true); }), "first Value, second Value, second_Click");
    EXPECT_TRUE(form->outside.Value() && form->second.Value() && !form->first.Value());
}

TEST_F(Toolkit, Unloading_Asks_Once_And_Discards) {
    EXPECT_EQ(Journal_Of([&] { form->Unload(); }), "") << "never loaded";
    Load_New_Form();
    form->Asked = [](bool& cancel) { cancel = true; };
    EXPECT_EQ(Journal_Of([&] { form->Unload(); }), "unload?");
    EXPECT_EQ(form->combo.Count(), 3) << "kept open";
    form->Asked = [&](bool&) { std::exchange(form->Asked, nullptr), form->Unload(); };
    EXPECT_EQ(Journal_Of([&] { form->Unload(); }), "unload?, unload?, unloaded, discarded") << "nested";
    EXPECT_EQ(Journal_Of([&] { form->Unload(), form->Show_Modal(); }), "");
    EXPECT_THROW(form->Load(), Form_Gone);
    EXPECT_TRUE(Loaded_Forms().empty());
}

TEST_F(Toolkit, Modal_Show_Ends_On_Hide_And_On_Unload) {
    Load_New_Form();
    EXPECT_EQ(Journal_Of([&] { Shown([&] { EXPECT_TRUE(form->Is_Visible()); }); }), "form Visible");
    EXPECT_EQ(form->combo.Count(), 3) << "hidden, it keeps its contents";
    Shown([&] { EXPECT_EQ(Failure_Number([&] { form->Show_Modal(); }), 400); });
    display.While_Shown = [](Form&) { automation::Raise(automation::run_time::Out_Of_Memory); };
    EXPECT_EQ(Failure_Number([&] { form->Show_Modal(); }), 7);
    EXPECT_FALSE(form->Is_Visible());
    EXPECT_EQ(Journal_Of([&] { Shown([&] { form->Unload(); }); }), "unload?, unloaded, discarded");
    EXPECT_FALSE(form->Is_Visible());
}

TEST_F(Toolkit, Auto_Size_Labels_Take_The_Design_Widths_Of_Their_Captions) {
    const std::pair<String_View, Twips> cases[] = {{u"Threshold:", 765},        {u"Ring Off (msec):", 1185},
                                                   {u"Ring On (msec):", 1155},  {u"Busy On (msec):", 1185},
                                                   {u"Busy Off (msec):", 1215}, {u"Ring Limit:", 735},
                                                   {u"Num Retries:", 930},      {u"Busy Retry (sec):", 1260},
                                                   {u"Retrieve:", 675},         {u"Disconnect:", 840},
                                                   {u"Transfer:", 675},         {u"Hook Flask (msec):", 1350},
                                                   {u"&Description:", 855},     {u"", 0}};
    for (const auto& [caption, width] : cases) {
        form->sized.Set_Caption(caption);
        EXPECT_EQ(form->sized.Place(), (Rectangle{10, 20, width, 195})) << To_UTF8(caption);
    }
}

} // namespace
