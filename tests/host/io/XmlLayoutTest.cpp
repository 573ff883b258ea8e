// Markup that VTK does not write itself, and files that say what they do not hold.
#include <sys/resource.h>

#include <gmock/gmock.h>
#include <vtkXMLStructuredGridWriter.h>

#include <cstring>

#include "DataSetFiles.h"
#include "EncodedMeshes.h"
#include "FileTree.h"

namespace {

using namespace filetesting;
using qelhost::DataSet;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::FileSource;
using qelhost::ReadDataSet;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  const std::size_t at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  if (at != std::string::npos) text.replace(at, what.size(), by);
  return text;
}

class XmlLayout : public FolderTest {
 protected:
  XmlLayout() : m_mesh(TwoBricks()) {}

  /// The two bricks, with their note unless it is taken from them.
  std::string Bricks(int mode, int isText, int compressor) {
    const Encoding encoding = {mode, isText, compressor, vtkXMLWriter::UInt32,
                               vtkXMLWriter::LittleEndian};
    SaveEncoded(Kinds()[0], encoding, m_mesh, In("bricks.vtu"));
    return Contents(In("bricks.vtu"));
  }
  std::string RawBricks(int compressor = vtkXMLWriter::NONE) {
    return Bricks(vtkXMLWriter::Appended, 0, compressor);
  }
  std::string Saved(const std::string& text) {
    Save(In("changed.vtu"), text);
    return In("changed.vtu");
  }
  /// Of reading the text as a file; "" when it can be read.
  std::string ErrorOf(const std::string& text) {
    const std::string path = Saved(text);
    try {
      ReadDataSet(path);
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), StartsWith(path + ": "));
      return error.Reason();
    }
    return {};
  }

  vtkSmartPointer<vtkUnstructuredGrid> m_mesh;
};

const qelhost::FileNode& OnlyNodeOf(const DataSet& data) {
  return static_cast<const FileSource&>(*data.GetSource()).steps.at(0).root;
}

TEST_F(XmlLayout, LeavesArraysInAFileThatHasNotesOfItsOwn) {
  EXPECT_NE(OnlyNodeOf(*ReadDataSet(Saved(RawBricks()))).xml, nullptr);
  m_mesh->GetFieldData()->Initialize();
  EXPECT_NE(OnlyNodeOf(*ReadDataSet(Saved(RawBricks()))).xml, nullptr);
}

TEST_F(XmlLayout, ArraysInACommentAreNone) {
  m_mesh->GetFieldData()->Initialize();
  const std::string text = RawBricks();
  const std::size_t begin = text.find("<DataArray type=\"Int32\" Name=\"id\"");
  const std::size_t end = text.find("/>", begin) + std::strlen("/>");
  const std::string commented = text.substr(0, begin) + "<!-- > once <DataArray/>" +
                                text.substr(begin, end - begin) + "-->" + text.substr(end);
  const DataSetPtr data = ReadDataSet(Saved(commented));
  EXPECT_EQ(data->VariableNumber("id"), 0);
  EXPECT_NE(data->VariableNumber("flag"), 0);
}

TEST_F(XmlLayout, NamesOfActiveArraysAreReadLikeTheirOwn) {
  m_mesh->GetFieldData()->Initialize();
  std::string text = Replaced(RawBricks(), "Scalars=\"p\"", "Scalars='a&lt;b>c'");
  text = Replaced(text, "Name=\"p\"", "Name='a&lt;b>c'");
  const DataSetPtr data = ReadDataSet(Saved(text));
  EXPECT_NE(data->VariableNumber("a<b>c"), 0);
  vtkDataArray* const active = OnlyNodeOf(*data).block->GetPointData()->GetScalars();
  ASSERT_NE(active, nullptr);
  EXPECT_STREQ(active->GetName(), "a<b>c");
}

TEST_F(XmlLayout, AnOffsetCountsWhateverTheFormatIsCalled) {
  const std::string text = RawBricks();
  const std::size_t types = text.find("Name=\"types\"");
  const std::string path =
      Saved(text.substr(0, types) + Replaced(text.substr(types), "\"appended\"", "\"unheard\""));
  const DataSetPtr data = ReadDataSet(path);
  const LgIndex_t p = data->VariableNumber("p");
  data->Writable(1, p)->set(data->Writable(1, p), 0, 12);
  data->AddVariable("longer", {{FieldDataType_Double, ValueLocation_Nodal}}, false);
  WriteDataSet(*data, In("target.vtu"));
  ExpectSame(ReadByVtk(In("target.vtu")), OnlyNodeOf(*data).block);
}

TEST_F(XmlLayout, TagsThatDoNotMatchAreRefused) {
  m_mesh->GetFieldData()->Initialize();
  EXPECT_NE(ErrorOf(Replaced(RawBricks(), "</PointData>", "</PaintData>")), "");
  EXPECT_NE(ErrorOf(Replaced(RawBricks(), "Name=\"p\"", "Name=\"p\" Name=\"p\"")), "");
  EXPECT_NE(ErrorOf(Replaced(RawBricks(), "<PointData ", "<PointData extra ")), "");
}

struct LieRow {
  const char* name;
  const char* what;
  const char* by;
  const char* error;
};

class XmlLies : public XmlLayout, public ::testing::WithParamInterface<LieRow> {};

/// With these VTK's reader ends the process, or makes up what is missing.
TEST_P(XmlLies, AreRefused) {
  const LieRow& row = GetParam();
  for (const int compressor : {vtkXMLWriter::NONE, vtkXMLWriter::ZLIB}) {
    EXPECT_THAT(ErrorOf(Replaced(RawBricks(compressor), row.what, row.by)), HasSubstr(row.error));
  }
}

const LieRow kLies[] = {
    {"TwoArraysOfOneName", "Name=\"id\"", "Name=\"p\"", "two arrays have the name \"p\""},
    {"LessThanNoCells", "NumberOfCells=\"2\"", "NumberOfCells=\"-1\"", "counts"},
    {"MoreCellsThanCanBe", "NumberOfCells=\"2\"", "NumberOfCells=\"9223372036854775807\"",
     "counts"},
    {"MoreCellsThanThereAre", "NumberOfCells=\"2\"", "NumberOfCells=\"2147483647\"", "incomplete"},
    {"UnknownType", "type=\"Float32\" Name=\"p\"", "type=\"Float33\" Name=\"p\"", "unknown type"},
    {"OtherNumberOfStrings", "Name=\"note\" NumberOfTuples=\"1\"",
     "Name=\"note\" NumberOfTuples=\"0\"", "another number of strings"},
    {"LessThanNoComponents", "NumberOfComponents=\"3\"", "NumberOfComponents=\"-1\"", "counts"},
    {"MoreComponentsThanCanBe", "NumberOfComponents=\"3\"",
     "NumberOfComponents=\"99999999999999999999\"", "counts"},
    {"OffsetBehindTheEndAndARemark", "<FieldData>",
     "<?a <DataArray?><FieldData><Array type=\"String\" Name=\"x\" format=\"appended\" "
     "offset=\"999999\"/>",
     "not as long as it says"},
    {"NoMarkBeforeTheData", "encoding=\"raw\">", "encoding=\"raw\">x", "no mark begins its data"},
    {"OffsetThatIsNone", "offset=\"0\"", "offset=\"none\"", "not as long as it says"},
    {"OffsetBehindTheEnd", "offset=\"0\"", "offset=\"9223372036854775000\"",
     "not as long as it says"},
};

INSTANTIATE_TEST_SUITE_P(Markup, XmlLies, ::testing::ValuesIn(kLies),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(XmlLayout, BlocksThatAreNotThereAreRefused) {
  const struct {
    std::size_t entry;  ///< of the header of the first array, the note
    const char* word;
  } kWords[] = {{0, "\0\0\0\0"}, {0, "\2\0\0\0"},   {0, "\0\0\0\x7f"},
                {1, "\0\0\0\0"}, {2, "\0\0\0\x7f"}, {3, "\0\0\0\x7f"}};
  const std::string whole = RawBricks(vtkXMLWriter::LZ4);
  const std::size_t header = whole.find('_', whole.find("<AppendedData")) + 1;
  for (const auto& [entry, word] : kWords) {
    std::string text = whole;
    text.replace(header + 4 * entry, 4, word, 4);
    EXPECT_NE(ErrorOf(text), "") << entry;
  }
}

TEST_F(XmlLayout, AnExtentThatNoPieceFillsIsRefused) {
  const std::string path = In("image.vti");
  SaveEncoded(Kinds()[4],
              {vtkXMLWriter::Appended, 0, vtkXMLWriter::NONE, vtkXMLWriter::UInt32,
               vtkXMLWriter::LittleEndian},
              Image(), path);
  const std::string text = Contents(path);
  for (const char* extent : {"0 2 0 2 0 2", "0 3 0 2 0 1", "-1 1 0 2 0 1"}) {
    Save(path, Replaced(text, "WholeExtent=\"0 2 0 2 0 1\"",
                        std::string("WholeExtent=\"") + extent + "\""));
    EXPECT_THROW(ReadDataSet(path), FileError) << extent;
  }
}

TEST_F(XmlLayout, SeveralPiecesFillAnExtentTogether) {
  const std::string path = In("pieces.vts");
  vtkNew<vtkXMLStructuredGridWriter> writer;
  writer->SetNumberOfPieces(2);
  writer->SetFileName(path.c_str());
  const auto grid = Kinds()[2].mesh();
  writer->SetInputData(grid);
  ASSERT_EQ(writer->Write(), 1);
  const std::string text = Contents(path);
  ASSERT_NE(text.find("<Piece"), text.rfind("<Piece"));
  ExpectSame(OnlyNodeOf(*ReadDataSet(path)).block, ReadByVtk(path));
  const std::size_t last = text.rfind("<Piece");
  const std::size_t end = text.find("</Piece>", last) + std::strlen("</Piece>");
  Save(path, text.substr(0, last) + text.substr(end));
  EXPECT_THROW(ReadDataSet(path), FileError);
}

TEST_F(XmlLayout, TextThatIsNoBase64IsRefused) {
  const std::string text = Bricks(vtkXMLWriter::Binary, 1, vtkXMLWriter::NONE);
  const std::size_t points = text.find('>', text.find("Name=\"Points\"")) + 40;
  EXPECT_EQ(ErrorOf(text.substr(0, points) + "!" + text.substr(points + 1)),
            "damaged: an array cannot be decoded");
}

TEST_F(XmlLayout, WordsAmongDecimalNumbersAreRefused) {
  const std::string text = Bricks(vtkXMLWriter::Ascii, 0, vtkXMLWriter::NONE);
  const std::size_t points = text.find("0.3", text.find("Name=\"Points\""));
  EXPECT_THAT(ErrorOf(text.substr(0, points) + "abc" + text.substr(points + 3)),
              HasSubstr("where a number belongs"));
}

TEST_F(XmlLayout, ADamagedArrayOfMarksIsAnErrorOfTheFile) {
  vtkNew<vtkUnsignedCharArray> marks;
  marks->SetName(vtkDataSetAttributes::GhostArrayName());
  marks->SetNumberOfTuples(m_mesh->GetNumberOfCells());
  marks->Fill(0);
  m_mesh->GetCellData()->AddArray(marks);
  m_mesh->GetFieldData()->Initialize();
  const DataSetPtr data = ReadDataSet(Saved(RawBricks(vtkXMLWriter::ZLIB)));
  const auto& xml = *OnlyNodeOf(*data).xml;
  std::string text = Contents(In("changed.vtu"));
  for (std::size_t n = 0; n < xml.stored.size(); ++n) {
    if (xml.layout.arrays[n].name != marks->GetName()) continue;
    text[static_cast<std::size_t>(xml.stored[n]->Table().dataBegin + 4)] ^= 0x55;
  }
  EXPECT_EQ(ErrorOf(text), "damaged: an array cannot be decoded");
}

TEST_F(XmlLayout, ARangeThatIsStillTheSameIsNotWrittenAnew) {
  const std::string source = Saved(RawBricks());
  const DataSetPtr data = ReadDataSet(source);
  const LgIndex_t p = data->VariableNumber("p");
  QelFieldData* const field = data->Writable(1, p);
  field->set(field, 3, 1.25);
  const std::string range = "RangeMin=\"0.33333333333\"";
  ASSERT_THAT(Contents(source), HasSubstr(range));
  WriteDataSet(*data, In("target.vtu"));
  EXPECT_THAT(Contents(In("target.vtu")), HasSubstr(range));
  field->set(field, 0, 1.0 / 3 - 1e-9);
  WriteDataSet(*data, In("target.vtu"));
  EXPECT_THAT(Contents(In("target.vtu")), HasSubstr("RangeMin=\"0.33333333233"));
}

/// Nobody has looked at what such markup hides.
TEST_F(XmlLayout, MarkupThatVtkDoesNotWriteIsRefused) {
  const std::string text = Bricks(vtkXMLWriter::Ascii, 0, vtkXMLWriter::NONE);
  const std::string error = "damaged, or marked up as no VTK file is";
  EXPECT_EQ(ErrorOf(text), "");
  EXPECT_EQ(ErrorOf(Replaced(text, "<Cells>", "<![CDATA[ ]]><Cells>")), error);
  EXPECT_EQ(ErrorOf(Replaced(text, "<VTKFile", "<!DOCTYPE a [<!ENTITY n \"9\">]><VTKFile")), error);
  EXPECT_EQ(ErrorOf(Replaced(text, "byte_order=\"Little", "byte_order=\"&#76;ittle")), error);
  EXPECT_EQ(ErrorOf(Replaced(text, "<Cells>", "<Other></Cells><Cells>")), error);
}

/// VTK takes it for an array, with all that it says of itself.
TEST_F(XmlLayout, OtherElementsAmongArraysAreRefused) {
  const std::string text = RawBricks();
  for (const char* section :
       {"<FieldData>", "<PointData Scalars=\"p\">", "<CellData>", "<Points>", "<Cells>"}) {
    const std::string other = "<Other type=\"String\" NumberOfTuples=\"9999999\" offset=\"0\"/>";
    EXPECT_EQ(ErrorOf(Replaced(text, section, section + other)),
              "damaged: something else stands where arrays belong")
        << section;
  }
}

/// VTK looks for the numbers behind it.
TEST_F(XmlLayout, AngleBracketsWithinTagsOfArraysAreRefused) {
  const std::string what = "type=\"Float64\" Name=\"p\"";
  for (const int mode : {vtkXMLWriter::Ascii, vtkXMLWriter::Binary}) {
    EXPECT_EQ(ErrorOf(Replaced(Bricks(mode, 0, vtkXMLWriter::NONE), what, what + " Range=\">\"")),
              "damaged: an angle bracket stands within the tag of an array");
  }
  EXPECT_EQ(ErrorOf(Replaced(RawBricks(), what, what + " Range=\">\"")), "");
}

TEST_F(XmlLayout, DeclaredEncodingsThatLeaveLettersWhereTheyAreAreRead) {
  const std::string text = RawBricks();
  for (const char* encoding : {"UTF-8", "ISO-8859-1", "us-ascii"}) {
    const std::string declared = std::string("<?xml version=\"1.0\" encoding=\"") + encoding;
    EXPECT_EQ(ErrorOf(Replaced(text, "<VTKFile", declared + "\"?>\n<VTKFile")), "") << encoding;
  }
}

TEST_F(XmlLayout, CountsThatNoSumHoldsAreRefused) {
  const std::string text = Bricks(vtkXMLWriter::Ascii, 0, vtkXMLWriter::NONE);
  const std::string error = "damaged: a piece counts what cannot be counted";
  const std::string piece = "<Piece NumberOfPoints=\"9223372036854775807\" NumberOfCells=\"2\">";
  EXPECT_EQ(ErrorOf(Replaced(text, "<Piece", piece + "</Piece>" + piece + "</Piece><Piece")),
            error);
  for (const char* count : {"9000000000000000000", "-1", "12x", "", "99999999999999999999"}) {
    EXPECT_EQ(
        ErrorOf(Replaced(text, "NumberOfPoints=\"12", std::string("NumberOfPoints=\"") + count)),
        error)
        << count;
    EXPECT_EQ(ErrorOf(Replaced(text, "NumberOfCells=\"2", std::string("NumberOfCells=\"") + count)),
              error)
        << count;
  }
}

TEST_F(XmlLayout, TuplesOfANoteThatCannotBeCountedAreRefused) {
  const std::string text = RawBricks();
  for (const char* count : {"9000000000000000000", "-1", "&#57;"}) {
    EXPECT_EQ(
        ErrorOf(Replaced(text, "NumberOfTuples=\"1", std::string("NumberOfTuples=\"") + count)),
        "damaged: an array counts what cannot be counted")
        << count;
  }
}

/// Files that stay open are few; the others are looked at all the same.
TEST_F(XmlLayout, FilesAreCheckedWhenNoneMayStayOpen) {
  const std::string good = RawBricks();
  std::vector<DataSetPtr> open;
  for (int n = 0; n < 30; ++n) open.push_back(ReadDataSet(Saved(good)));
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit tight = before;
  tight.rlim_cur = 58;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &tight), 0);
  const auto data = ReadDataSet(Saved(good));
  const std::string error = ErrorOf(Replaced(good, "NumberOfPoints=\"12", "NumberOfPoints=\"13"));
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(OnlyNodeOf(*data).xml, nullptr) << "the test means files that do not stay open";
  EXPECT_EQ(error, "damaged: array \"p\" is incomplete");
}

/// VTK makes marks of them while it reads.
TEST_F(XmlLayout, GhostLevelsOfOldFilesAreMarks) {
  vtkNew<vtkUnsignedCharArray> levels;
  levels->SetName("vtkGhostLevels");
  levels->InsertNextValue(0);
  levels->InsertNextValue(1);
  m_mesh->GetCellData()->AddArray(levels);
  const std::string path = Saved(RawBricks());
  const auto data = ReadDataSet(path);
  ExpectSame(OnlyNodeOf(*data).block, ReadByVtk(path));
}

}  // namespace
