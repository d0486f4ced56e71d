// pictures_as_kept TAKEN KEPT: whether the tour's pictures in one folder look like those in the other.
#include "support/KeptPictures.h"

namespace {

QString takenIn;
QString keptIn;

TEST(Tour, LooksAsKept) {
  const QStringList kept = QDir(keptIn).entryList({"*.png"});
  ASSERT_GE(kept.size(), 5);
  for (const QString& name : kept) {
    // In front of the name is the picture's number.
    const QStringList taken = QDir(takenIn).entryList({"[0-9][0-9][0-9]-" + name});
    ASSERT_EQ(taken.size(), 1) << name.toStdString();
    pictures::expectAsKept(QImage(takenIn + "/" + taken[0]), keptIn + "/" + name);
  }
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc != 3) return 2;
  takenIn = argv[1];
  keptIn = argv[2];
  return RUN_ALL_TESTS();
}
