// Files that name others: themselves, one another, far too many, and what lies elsewhere.
#include "HostileFiles.h"

namespace {

using namespace filetesting;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class HostileIndexes : public HostileFiles {
 protected:
  static std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int n = 0; n < count; ++n) all += text;
    return all;
  }
};

constexpr char kNamesItself[] = ": names itself, or a file that names it";

TEST_F(HostileIndexes, CyclesAreRefused) {
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Entry("a.vtm")))), In("a.vtm") + kNamesItself);
  fs::create_directory(In("sub"));
  Saved("a.vtm", Blocks(Entry("sub/../sub/b.vtm")));
  Saved("sub/b.vtm", Blocks(Entry("../a.vtm")));
  EXPECT_THAT(ReadError(In("a.vtm")), EndsWith(kNamesItself));
  fs::create_symlink(In("b.vtm"), In("link.vtm"));
  EXPECT_THAT(ReadError(Saved("b.vtm", Blocks(Entry("link.vtm")))), EndsWith(kNamesItself));
  Saved("a.pvd", Series(Entry("c.vtm")));
  Saved("c.vtm", Blocks(Entry("a.pvd")));
  EXPECT_EQ(ReadError(In("a.pvd")), In("a.pvd") + kNamesItself);
  EXPECT_EQ(ReadError(In("c.vtm")), In("c.vtm") + kNamesItself);
}

TEST_F(HostileIndexes, CycleLeavesNothingBehindForTheNextFile) {
  ReadError(Saved("a.vtm", Blocks(Entry("a.vtm"))));
  SaveBricks("good.vtu");
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Entry("good.vtu") + Entry("good.vtu")))), "");
}

TEST_F(HostileIndexes, LongChainsAreRefused) {
  SaveBricks("good.vtu");
  Saved("0.vtm", Blocks(Entry("good.vtu")));
  for (int n = 1; n < 40; ++n) {
    const std::string name = std::to_string(n) + ".vtm";
    Saved(name, Blocks(Entry(std::to_string(n - 1) + ".vtm")));
  }
  EXPECT_EQ(ReadError(In("9.vtm")), "");
  EXPECT_THAT(ReadError(In("39.vtm")), EndsWith(": lies too deep in files that name others"));
}

/// Three short files ask for sixteen million others.
TEST_F(HostileIndexes, FilesNamedAgainAndAgainAreRefused) {
  SaveBricks("good.vtu");
  Saved("note.dat", "a note");
  Saved("0.vtm", Blocks(Entry("good.vtu") + Repeated(Entry("note.dat"), 255)));
  EXPECT_EQ(ReadError(In("0.vtm")), "");
  Saved("0.vtm", Blocks(Repeated(Entry("note.dat"), 256)));
  Saved("1.vtm", Blocks(Repeated(Entry("0.vtm"), 256)));
  Saved("2.vtm", Blocks(Repeated(Entry("1.vtm"), 256)));
  EXPECT_THAT(ReadError(In("2.vtm")), EndsWith(": is named too often"));
}

/// More bytes than a small index has any right to.
TEST_F(HostileIndexes, LargeFilesNamedAgainAndAgainAreRefused) {
  Saved("large.dat", "");
  fs::resize_file(In("large.dat"), std::uintmax_t{3} << 30);  // with nothing in it
  SaveBricks("good.vtu");
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Entry("good.vtu") + Repeated(Entry("large.dat"), 2)))),
            "");
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Entry("good.vtu") + Repeated(Entry("large.dat"), 3)))),
            In("large.dat") + ": is named too often");
}

TEST_F(HostileIndexes, ManyEntriesAreReadOrRefused) {
  constexpr int kMany = 100000;
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Repeated(Entry("gone.vtu"), kMany)))),
            In("gone.vtu") + ": No such file or directory");
  SaveBricks("good.vtu");
  const std::string empty = "<DataSet index=\"0\"/>";
  const auto data = ReadDataSet(Saved("a.vtm", Blocks(Repeated(empty, kMany) + Entry("good.vtu"))));
  EXPECT_EQ(data->ZoneCount(), 1);
}

TEST_F(HostileIndexes, DeepMarkupIsRefused) {
  constexpr int kDeep = 100000;
  const std::string deep = Repeated("<Block>", kDeep) + Repeated("</Block>", kDeep);
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(deep))),
            In("a.vtm") + ": damaged: its elements lie too deep in one another");
  EXPECT_EQ(ReadError(Saved("a.pvd", Series(deep))),
            In("a.pvd") + ": damaged: its elements lie too deep in one another");
  EXPECT_EQ(ReadError(Saved("a.vtm", "<!DOCTYPE a [<!ENTITY b \"c\">]>" + Blocks(""))),
            In("a.vtm") + ": damaged: it has declarations or marked text");
}

/// What stands behind an element that is too long to be looked at goes to the same parser.
TEST_F(HostileIndexes, LongMarkupHidesNothing) {
  constexpr int kDeep = 100000;
  const std::string deep = Repeated("<Block>", kDeep) + Repeated("</Block>", kDeep);
  const std::string refused = In("a.vtm") + ": damaged: an element is longer than any can be";
  EXPECT_EQ(ReadError(Saved("a.vtm", "<!--" + Repeated(">", 70000) + "-->" + Blocks(deep))),
            refused);
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks("<Block name=\"" + Repeated("x", 1 << 21)))), refused);
}

TEST_F(HostileIndexes, AttributesAreFew) {
  SaveBricks("good.vtu");
  const auto withAttributes = [this](int count) {
    std::string text;
    for (int n = 0; n < count; ++n) text += " a" + std::to_string(n) + "=\"\"";
    return ReadError(
        Saved("a.vtm", Blocks("<DataSet index=\"0\" file=\"good.vtu\"" + text + "/>")));
  };
  EXPECT_EQ(withAttributes(40), "");
  EXPECT_EQ(withAttributes(80),
            In("a.vtm") + ": damaged: an element has more attributes than any needs");
}

TEST_F(HostileIndexes, PiecesNamedAgainAndAgainAreRefused) {
  SaveBricks("good.vtu");
  // With blanks at its end, which cost nothing to read.
  std::string text = Contents(In("good.vtu"));
  text.insert(text.rfind("</VTKFile>"), std::string(32 << 20, ' '));
  Save(In("large.vtu"), text);
  EXPECT_EQ(
      ReadError(Saved("a.pvtu", Pieces("PUnstructuredGrid", "", Repeated(Piece("good.vtu"), 100)))),
      "");
  EXPECT_EQ(ReadError(Saved("a.pvtu",
                            Pieces("PUnstructuredGrid", "", Repeated(Piece("large.vtu"), 200)))),
            In("large.vtu") + ": is named too often");
}

// ---- what lies elsewhere ----

/// Folders: here/ with the indexes, and beside it the files that they name.
class NamesElsewhere : public HostileIndexes {
 protected:
  NamesElsewhere() {
    fs::create_directory(In("here"));
    fs::create_directory(In("elsewhere"));
    SaveBricks("elsewhere/one.vtu");
    SaveBricks("two.vtu");
    m_one = Contents(In("elsewhere/one.vtu"));
    m_two = Contents(In("two.vtu"));
    m_entries = Entry("../elsewhere/one.vtu") + Entry(In("two.vtu"));
  }
  void ExpectUntouched() const {
    EXPECT_EQ(Contents(In("elsewhere/one.vtu")), m_one);
    EXPECT_EQ(Contents(In("two.vtu")), m_two);
    EXPECT_EQ(std::distance(fs::directory_iterator(In("elsewhere")), {}), 1);
    EXPECT_THAT(Files(), ::testing::ElementsAre("elsewhere", "here", "two.vtu"));
  }
  void AlterAll(qelhost::DataSet& data) {
    for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
      QelFieldData* const field = data.Writable(zone, data.VariableNumber("p"));
      ASSERT_NE(field, nullptr);
      field->set(field, 0, 42);
    }
  }

  std::string m_one, m_two, m_entries;
};

TEST_F(NamesElsewhere, AreReadAndNeverWritten) {
  for (const char* name : {"here/a.vtm", "here/a.pvd"}) {
    const bool isSeries = fs::path(name).extension() == ".pvd";
    const std::string path = Saved(name, isSeries ? Series(m_entries) : Blocks(m_entries));
    const auto data = ReadDataSet(path);
    ASSERT_EQ(data->ZoneCount(), 2);
    AlterAll(*data);
    WriteDataSet(*data, In("here/b") + (isSeries ? ".pvd" : ".vtm"));
    ExpectUntouched();
    // Onto the index itself: its pieces become its own, those elsewhere stay.
    WriteDataSet(*data, path);
    ExpectUntouched();
    EXPECT_THAT(Contents(path), ::testing::Not(HasSubstr("elsewhere")));
    const auto again = ReadDataSet(path);
    const QelFieldData* const field = again->Readable(2, again->VariableNumber("p"));
    EXPECT_EQ(field->get(field, 0), 42);
  }
}

/// The target's present index names what lies elsewhere by a name in the target's own folder.
TEST_F(NamesElsewhere, StayThereWhenLinksLeadToThem) {
  const auto data = ReadDataSet(In("two.vtu"));
  fs::create_directory(In("here/a"));
  fs::create_symlink(In("elsewhere/one.vtu"), In("here/a/a_0.vtu"));
  WriteDataSet(*data, Saved("here/a.vtm", Blocks(Entry("a/a_0.vtu"))));
  ExpectUntouched();
  fs::create_directory_symlink(In("elsewhere"), In("here/b"));
  WriteDataSet(*data, Saved("here/b.vtm", Blocks(Entry("b/one.vtu"))));
  ExpectUntouched();
  WriteDataSet(*data, Saved("here/c.vtm", Blocks(Entry("c/../../elsewhere/one.vtu"))));
  ExpectUntouched();
}

TEST_F(NamesElsewhere, DoNotKeepATargetThatNamesItselfFromBeingReplaced) {
  const auto data = ReadDataSet(In("two.vtu"));
  for (const char* extension : {".vtm", ".pvd"}) {
    const std::string path = In("here/a") + extension;
    const std::string entries = Entry(std::string("a") + extension) + Entry("b.vtm");
    Save(path, extension == std::string(".vtm") ? Blocks(entries) : Series(entries));
    Saved("here/b.vtm", Blocks(Entry("a.vtm") + Entry("a.pvd") + Entry("b.vtm")));
    WriteDataSet(*data, path);
    EXPECT_EQ(ReadDataSet(path)->ZoneCount(), 1);
    ExpectUntouched();
  }
}

}  // namespace
