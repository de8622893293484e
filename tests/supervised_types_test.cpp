// The five supervised types: captions, enabled fields, starting values, and the flag that decides about them.
#include <gtest/gtest.h>

#include <map>

#include "field_rows.h"

namespace {

const std::vector<std::string> Details = Words(
    "lblThreshold cmbThreshold lblRetrieve txtRetrieve lblBusyRetry cmbBusyRetry lblNumRetries cmbNumRetries "
    "lblRingLimit cmbRingLimit lblBusyOn cmbBusyOn lblBusyOff cmbBusyOff lblRingOn cmbRingOn lblRingOff "
    "cmbRingOff");

using Picture = std::map<std::string, Line>;

// The controls at the script's last `show`.
Picture Shown(const Lines& lines) {
    Picture picture;
    for (const Line& control : Only(lines, "control"))
        picture[control.at("name")] = control;
    EXPECT_EQ(picture.size(), 44U);
    return picture;
}

std::string Detail_Texts(const Picture& picture) {
    std::string texts;
    for (const std::string& name : Details)
        if (name.substr(0, 3) != "lbl" && name != "cmbThreshold")
            texts += picture.at(name).at("text").get<std::string>() + " ";
    return texts;
}

std::string Busy_Captions(const Picture& picture) {
    return picture.at("lblBusyOn").at("caption").get<std::string>() + " " +
           picture.at("lblBusyOff").at("caption").get<std::string>();
}

// The details whose state differs from `enabled`.
std::vector<std::string> Otherwise(const Picture& picture, bool enabled) {
    std::vector<std::string> names;
    for (const std::string& name : Details)
        if (picture.at(name).at("enabled") != enabled)
            names.push_back(name);
    return names;
}

Picture Played(std::string_view script) {
    Editor_Session session;
    return Shown(session.Play(std::string(script) + "\nshow\nanswer discard\nclose"));
}

const std::string Starting_Values = "! 4 3 5 500 500 2000 4000 ";
const std::string Common = "Busy On (msec): Busy Off (msec):";
const std::string Enhanced = "Busy1 On (msec): Busy2 On (msec):";

} // namespace

TEST(Supervised_Type, A_Detailed_Type_Enables_And_Starts_The_Details_Of_A_Blind_Node) {
    const Picture blind = Played("shown 1 1 2");
    EXPECT_EQ(Otherwise(blind, false), std::vector<std::string>{});
    EXPECT_EQ(Detail_Texts(blind), "        ");
    for (const std::string option : {"optPartial", "optFull", "optDialContinue", "optEnhanced"}) {
        SCOPED_TRACE(option);
        Editor_Session session;
        const Lines lines = session.Play("shown 1 1 2\nclick " + option + "\nshow\nanswer discard\nclose");
        const Picture picture = Shown(lines);
        EXPECT_EQ(Otherwise(picture, true), std::vector<std::string>{});
        EXPECT_EQ(Detail_Texts(picture), Starting_Values);
        EXPECT_EQ(Busy_Captions(picture), option == "optEnhanced" ? Enhanced : Common);
        EXPECT_TRUE(picture.at("fra").at("visible") && picture.at("fra").at("enabled"));
        EXPECT_TRUE(picture.at("cmdApply").at("enabled"));
        EXPECT_TRUE(picture.at(option).at("value"));
        EXPECT_FALSE(Only(lines, "result").at(0).at("SupervisedType_Blind"));
        for (const std::string name : {"cmbHookFlash", "txtTransfer", "txtDisconnect", "txtDescription"})
            EXPECT_EQ(picture.at(name), blind.at(name)) << name;
        EXPECT_EQ(picture.at("cmbThreshold").at("index"), blind.at("cmbThreshold").at("index"));
    }
}

TEST(Supervised_Type, Blind_Only_Greys_The_Details) {
    const Picture before = Played("shown 1 1 9"); // Enhanced
    Editor_Session session;
    const Lines lines = session.Play("shown 1 1 9\nclick optBlind\nshow\nanswer discard\nclose");
    const Picture after = Shown(lines);
    EXPECT_EQ(Otherwise(after, false), std::vector<std::string>{});
    EXPECT_EQ(Detail_Texts(after), Detail_Texts(before));
    EXPECT_EQ(Busy_Captions(after), Enhanced);
    EXPECT_TRUE(after.at("fra").at("visible") && after.at("fra").at("enabled"));
    EXPECT_TRUE(after.at("cmdApply").at("enabled"));
    EXPECT_FALSE(Only(lines, "result").at(0).at("SupervisedType_Blind"));
}

TEST(Supervised_Type, The_Starting_Values_Are_Written_Once) {
    EXPECT_EQ(Detail_Texts(Played("shown 1 1 2\nclick optPartial\npaste cmbBusyRetry 9\nclick optBlind\n"
                                  "click optFull\nclick optEnhanced")),
              "! 9 3 5 500 500 2000 4000 ");
    EXPECT_EQ(Detail_Texts(Played("shown 1 1 3\nclick optBlind\nclick optFull")),
              "!! 2 6 4 250 250 2000 4000 "); // a node that was not stored as Blind keeps its own
    // They are remembered as accepted texts.
    EXPECT_EQ(Detail_Texts(Played("shown 1 1 2\nclick optFull\ntype cmbRingLimit x\npaste txtRetrieve A")),
              Starting_Values);
}

TEST(Supervised_Type, Captions_Follow_The_Type_And_Values_Stay) {
    const Picture enhanced = Played("shown 1 1 3\nclick optEnhanced");
    EXPECT_EQ(Busy_Captions(enhanced), Enhanced);
    EXPECT_EQ(Detail_Texts(enhanced), "!! 2 6 4 250 250 2000 4000 ");
    EXPECT_TRUE(enhanced.at("cmdApply").at("enabled"));
    EXPECT_EQ(Busy_Captions(Played("shown 1 1 3\nclick optEnhanced\nclick optPartial")), Common);
    EXPECT_FALSE(Played("shown 1 1 3\nclick optPartial").at("cmdApply").at("enabled")) << "selected already";
}

TEST(Supervised_Type, A_Blind_Node_Keeps_The_Details_Of_The_Node_Shown_Before) {
    const Picture blind = Played("shown 1 1 1\npick cmbNode 7\npick cmbNode 1");
    EXPECT_EQ(Detail_Texts(blind), "!,,# 10 5 10 350 350 400 2000 ");
    EXPECT_EQ(Otherwise(blind, false), std::vector<std::string>{});
    EXPECT_FALSE(blind.at("cmdApply").at("enabled"));
    // The next node's own record goes over the starting values.
    EXPECT_EQ(Detail_Texts(Played("shown 1 1 2\nclick cmdNext")), "!! 2 6 4 250 250 2000 4000 ");
    // Without a record they stay.
    EXPECT_EQ(Detail_Texts(Played("shown 1 1 2\npick cmbNode 9")), Starting_Values);
}

TEST(Supervised_Type, The_Flag_Lives_In_The_Object_And_Is_The_Hosts_To_Write) {
    const std::string without_record = "shown 1 1 14\nshow\nclose\n"; // type 3 without a detail record
    Editor_Session session;
    const auto texts_of = [&session](const std::string& script) {
        return Detail_Texts(Shown(session.Play(script)));
    };
    EXPECT_EQ(texts_of(without_record), "        ");
    EXPECT_EQ(texts_of("blind true\n" + without_record), Starting_Values);
    EXPECT_EQ(texts_of("blind true\nblind false\n" + without_record), "        ");
    EXPECT_EQ(texts_of("blind true\nnew\n" + without_record), "        ");
    EXPECT_EQ(texts_of("shown 1 1 2\nclose\n" + without_record), Starting_Values);
    EXPECT_EQ(texts_of("shown 1 1 2\nclick optFull\nanswer discard\nclose\n" + without_record), "        ");

    std::vector<bool> flags;
    for (const Line& result : Only(session.Play("shown 1 1 2\nclose\nshown 1 1 3\nclose\nblind true\n"
                                                "shown 1 1 3\nclose\nshown 1 1 2\nclick optEnhanced\n"
                                                "click optBlind\nanswer discard\nclose"),
                                   "result"))
        flags.push_back(result.at("SupervisedType_Blind"));
    EXPECT_EQ(flags, (std::vector<bool>{true, false, false, false}));
}
