#include "qsb/QSB_TargetFile.h"

#include <gtest/gtest.h>

#include "tests/support/RaisedBy.h"
#include "tests/support/ScratchDirectory.h"

TEST(QSB_TargetFile, CannotBeReadBack)
{
    const ScratchDirectory scratch; // the log is written here
    QSB_TargetFile file;
    ASSERT_TRUE(file.CreateFor("scene.qsb"));
    file.WriteInt32(7);
    file.Seek(0);
    int32_t value = 0;
    EXPECT_EQ(RaisedBy([&] { file.ReadInt32(&value); }), "scene.qsb: File is not readable");
    EXPECT_EQ(value, 0);
}
