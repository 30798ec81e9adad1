#include "ProgramInfo.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

// Puts the variable back as it was before the test.
class ProgramInfoTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (const char* value = std::getenv("CIFWARDPREFS"))
            saved_ = value;
    }
    void TearDown() override { setVariable(saved_ ? saved_->c_str() : nullptr); }

    static void setVariable(const char* value)
    {
        if (value != nullptr)
            setenv("CIFWARDPREFS", value, 1);
        else
            unsetenv("CIFWARDPREFS");
    }

private:
    std::optional<std::string> saved_;
};

TEST_F(ProgramInfoTest, PreferencesPathFollowsTheEnvironment)
{
    struct Case {
        const char* name;
        const char* value; // null: variable unset
        std::string expected;
    };
    const Case cases[] = {
        {"set", "/home/ana/cifward-lists", "/home/ana/cifward-lists"},
        {"set with blanks", "/srv/shared lists", "/srv/shared lists"},
        {"set but empty", "", ""},
        {"unset", nullptr, ""},
    };

    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        setVariable(c.value);
        EXPECT_EQ(preferencesPath(), c.expected);
    }
}

} // namespace
