#include "CifTestSupport.h"
#include "QcbsDictionarySettings.h"

#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

HCifConcreteDictionary dictionary_named(const std::string& name, const std::string& version,
                                        const std::string& units)
{
    return dictionary_from("data_on_this_dictionary\n_dictionary_name " + name + "\n_dictionary_version " +
                           version + "\ndata_length\n_name '_x_length'\n_type numb\n_units " + units + "\n");
}

std::vector<std::string> names_in(const HCifDictionaryPool& pool)
{
    std::vector<std::string> names;
    for (const HCifConcreteDictionary& d : *pool)
        names.push_back(d->header().name);
    return names;
}

// Settings of this test go to a directory of its own, never to the user's.
class DictionarySettings : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir_.isValid());
        for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
            for (QSettings::Scope scope : {QSettings::UserScope, QSettings::SystemScope})
                QSettings::setPath(format, scope, dir_.path());
        // Qt keeps settings files it has opened; each test starts from an empty store all the same.
        QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward")).clear();
        all_->add(first_);
        all_->add(second_);
    }
    QTemporaryDir dir_;
    HCifConcreteDictionary first_ = dictionary_named("first.dic", "1.0", "A");
    HCifConcreteDictionary second_ = dictionary_named("second.dic", "2.1", "nm");
    HCifDictionaryPool all_{new CifDictionaryPool};
};

} // namespace

TEST_F(DictionarySettings, StoredStatesChooseTheEnabledDictionaries)
{
    struct Case {
        const char* name;
        std::vector<std::pair<const char*, bool>> stored;
        std::vector<std::string> enabled;
        std::string units; // of _x_length, from the dictionary that answers first
    };
    const std::vector<Case> cases = {
        {"nothing stored: all enabled", {}, {"first.dic", "second.dic"}, "A"},
        {"first disabled", {{"/Cifward/dictionaries/first.dic1.0", false}}, {"second.dic"}, "nm"},
        {"both disabled",
         {{"/Cifward/dictionaries/first.dic1.0", false}, {"/Cifward/dictionaries/second.dic2.1", false}},
         {},
         ""},
        // A state stored for another version does not apply.
        {"other version", {{"/Cifward/dictionaries/first.dic0.9", false}}, {"first.dic", "second.dic"}, "A"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        {
            QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
            settings.clear();
            for (const auto& stored : c.stored)
                settings.setValue(QString::fromLatin1(stored.first), stored.second);
        }
        QcbsDictionarySettings chosen(all_);
        EXPECT_EQ(names_in(chosen.settings()), c.enabled);
        EXPECT_EQ(chosen.settings()->units("_x_length"), c.units);
    }
}

TEST_F(DictionarySettings, EnablingAgainPutsADictionaryLastAndSaveWritesOnlyChanges)
{
    QcbsDictionarySettings chosen(all_);
    chosen.save();
    {
        QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
        EXPECT_TRUE(settings.allKeys().isEmpty()) << "nothing changed, nothing written";
    }

    chosen.setDictionaryEnabled(first_, false);
    chosen.setDictionaryEnabled(first_, true);
    EXPECT_EQ(names_in(chosen.settings()), (std::vector<std::string>{"second.dic", "first.dic"}));
    EXPECT_EQ(chosen.settings()->units("_x_length"), "nm");

    chosen.setDictionaryEnabled(second_, false);
    chosen.save();
    QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
    EXPECT_TRUE(settings.value("/Cifward/dictionaries/first.dic1.0").toBool());
    EXPECT_FALSE(settings.value("/Cifward/dictionaries/second.dic2.1", true).toBool());

    // A new session reads back what was saved.
    QcbsDictionarySettings next(all_);
    EXPECT_EQ(names_in(next.settings()), (std::vector<std::string>{"first.dic"}));
}
