#include "platform/linux/MimeTypeCatalog.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

TEST(MimeTypeCatalog, KnowsTheNamesThatTellATypeWithoutAnExtension) {
    MimeTypeCatalog types;
    for (auto const& [name, type] : {std::pair{"Makefile", "text/x-makefile"},
                                     {"README", "text/x-readme"},
                                     {"readme first", "text/x-readme"},
                                     {"notes~", "application/x-trash"},
                                     {"n4711", "application/octet-stream"},
                                     {"makefiles", "application/octet-stream"},
                                     {"a.tar.gz", "application/x-compressed-tar"}})
        EXPECT_EQ(types.mimeType(name, false), type) << name;
}

} // namespace
} // namespace taliro::testing
