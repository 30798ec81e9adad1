// The view written to an archive and read back, and what a read refuses.
#include "Archive.h"
#include "Renderer.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

TEST(ViewArchive, ReadsBackWhatWasWrittenAndRefusesTheRestUnchanged)
{
    Renderer written;
    written.setOrientation(Transformation({0, 0, 1}, 40, true));
    written.setRotationCentre({1, 2, 3});
    written.setFieldOfView(30);
    written.setUseBackdrop(true);
    written.setBackdropColors(RGBA(1, 0, 0, 1), RGBA(0, 1, 0, 1), RGBA(0, 0, 1, 1), RGBA(1, 1, 1, 1));
    std::ostringstream stored;
    Archive out(stored);
    written.write(out);
    const std::string bytes = stored.str();

    std::string other_version = bytes;
    ++other_version[0];
    const struct {
        const char* what;
        std::string bytes;
        const char* error;
    } cases[] = {
        {"whole", bytes, nullptr},
        {"another version", other_version, "Renderer::read - format version mismatch"},
        {"cut short", bytes.substr(0, bytes.size() - 3), "Archive::read - unexpected end of data"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::istringstream in(c.bytes);
        Archive archive(in);
        Renderer read;
        if (!c.error) {
            read.read(archive);
            EXPECT_TRUE(read.viewState() == written.viewState());
            EXPECT_TRUE(read.useBackdrop());
            EXPECT_TRUE(read.backdropColors()[2].equals(RGBA(0, 0, 1, 1)));
            continue;
        }
        try {
            read.read(archive);
            ADD_FAILURE() << "read without error";
        } catch (const std::exception& e) {
            EXPECT_STREQ(e.what(), c.error);
        }
        EXPECT_TRUE(read.viewState() == RendererViewState());
        EXPECT_FALSE(read.useBackdrop());
    }
}

} // namespace
