// Files whose untouched bytes are copied hold what VTK reads from them, whatever their encoding.
#include <vtkInformation.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <set>

#include "DataSetFiles.h"
#include "EncodedMeshes.h"
#include "FileTree.h"
#include "xml/PassThrough.h"

namespace {

using namespace filetesting;
using qelhost::DataSet;
using qelhost::DataSetPtr;
using qelhost::FileNode;
using qelhost::FileSource;
using qelhost::ReadDataSet;
using qelhost::ValuesError;
using qelhost::WriteDataSet;
using ::testing::HasSubstr;
using ::testing::Not;

const FileNode& FileNodeOf(const DataSet& data) {
  return static_cast<const FileSource&>(*data.GetSource()).steps.at(0).root;
}

/// Writes value n of a variable in the data set and, as the test has it, in the mesh.
void Alter(DataSet& data, vtkDataArray* expected, const std::string& variable, LgIndex_t n,
           double value) {
  QelFieldData* const field = data.Writable(1, data.VariableNumber(variable));
  ASSERT_NE(field, nullptr) << variable;
  field->set(field, n, value);
  expected->SetComponent(n, 0, value);
}

/// Whether the copy was made without VTK's writer.
bool IsPassedThrough(const DataSet& data, const std::string& path) {
  const FileNode& node = FileNodeOf(data);
  return node.xml != nullptr &&
         WritePassingThrough(*node.xml, node.block, data.TouchedArrays(), path);
}

/// One mesh in one encoding, with the data set that is read from it.
struct PassedSample {
  vtkSmartPointer<vtkDataSet> mesh;  ///< as VTK has it from the file: it makes another type of some
  std::string source;
  std::string target;
};

using FormRow = std::tuple<Kind, Form>;

class PassThrough : public FolderTest, public ::testing::WithParamInterface<FormRow> {
 protected:
  /// Calls the body for the mesh in every compression, header width and byte order.
  void ForEachEncoding(const std::function<void(const PassedSample&)>& body) {
    const auto& [kind, form] = GetParam();
    const auto mesh = kind.mesh();
    for (const Encoding& encoding : EncodingsOf(form)) {
      SCOPED_TRACE(NameOf(encoding));
      PassedSample sample;
      sample.source = In(std::string("source.") + kind.extension);
      sample.target = In(std::string("target.") + kind.extension);
      SaveEncoded(kind, encoding, mesh, sample.source);
      sample.mesh = ReadByVtk(sample.source);
      body(sample);
      if (HasFailure()) return;
    }
  }
};

TEST_P(PassThrough, CopiesAnUntouchedFileWithoutReadingItsArrays) {
  ForEachEncoding([&](const PassedSample& sample) {
    const DataSetPtr data = ReadDataSet(sample.source);
    ASSERT_TRUE(IsPassedThrough(*data, sample.target));
    EXPECT_EQ(Contents(sample.target), Contents(sample.source));
    for (const auto& [array, pending] : *FileNodeOf(*data).xml->pending) {
      EXPECT_FALSE(pending->IsLoaded()) << array->GetName();
    }
  });
}

TEST_P(PassThrough, ReadsWhatVtkReads) {
  ForEachEncoding([&](const PassedSample& sample) {
    const DataSetPtr data = ReadDataSet(sample.source);
    LoadAll(*FileNodeOf(*data).xml);
    ExpectSame(FileNodeOf(*data).block, sample.mesh);
  });
}

TEST_P(PassThrough, WritesAlteredValuesOfEveryTypeAndNothingElse) {
  ForEachEncoding([&](const PassedSample& sample) {
    const DataSetPtr data = ReadDataSet(sample.source);
    const LgIndex_t last = static_cast<LgIndex_t>(sample.mesh->GetNumberOfCells()) - 1;
    for (const char* name : {"float", "double", "int8", "uint8", "uint16", "int32", "uint32",
                             "int64", "uint64", "ids"}) {
      vtkDataArray* const atNodes = sample.mesh->GetPointData()->GetArray(name);
      Alter(*data, atNodes, name, 0, 7);
      Alter(*data, atNodes, name, last, 100);
      Alter(*data, sample.mesh->GetCellData()->GetArray(name), std::string(name) + " (cell)", last,
            99);
    }
    Alter(*data, sample.mesh->GetPointData()->GetArray("vector"), "vector_X", 5, -3.5);
    ASSERT_TRUE(IsPassedThrough(*data, sample.target));
    ExpectSame(ReadByVtk(sample.target), sample.mesh);
  });
}

TEST_P(PassThrough, WritesAlteredPlaces) {
  ForEachEncoding([&](const PassedSample& sample) {
    auto* const nodes = vtkPointSet::SafeDownCast(sample.mesh);
    if (nodes == nullptr) return;  // its places are computed
    const DataSetPtr data = ReadDataSet(sample.source);
    Alter(*data, nodes->GetPoints()->GetData(), "X", 17, -12.75);
    ASSERT_TRUE(IsPassedThrough(*data, sample.target));
    ExpectSame(ReadByVtk(sample.target), sample.mesh);
  });
}

TEST_P(PassThrough, AddsNewVariables) {
  ForEachEncoding([&](const PassedSample& sample) {
    const DataSetPtr data = ReadDataSet(sample.source);
    const auto add = [&](const char* name, QelFieldDataType_e type, QelValueLocation_e location) {
      const LgIndex_t var = data->AddVariable(name, {{type, location}}, false);
      QelFieldData* const field = data->Writable(1, var);
      field->set(field, 3, 5);
      vtkDataSetAttributes* to = sample.mesh->GetCellData();
      if (location == ValueLocation_Nodal) to = sample.mesh->GetPointData();
      const auto array = vtkSmartPointer<vtkDataArray>::Take(
          vtkDataArray::CreateDataArray(qelhost::VtkTypeOfField(type)));
      array->SetName(name);
      array->SetNumberOfTuples(field->count);
      array->Fill(0);
      array->SetComponent(3, 0, 5);
      to->AddArray(array);
    };
    add("hidden <&> cells", FieldDataType_Byte, ValueLocation_CellCentered);
    add("weight", FieldDataType_Double, ValueLocation_Nodal);
    add("number", FieldDataType_Int16, ValueLocation_CellCentered);
    Alter(*data, sample.mesh->GetCellData()->GetArray("float"), "float (cell)", 2, 0.125);
    ASSERT_TRUE(IsPassedThrough(*data, sample.target));
    ExpectSame(ReadByVtk(sample.target), sample.mesh);

    // What was written is laid out like any other file.
    const DataSetPtr again = ReadDataSet(sample.target);
    const std::string third = sample.target + "." + std::get<0>(GetParam()).extension;
    Alter(*again, sample.mesh->GetPointData()->GetArray("weight"), "weight", 1, 2.5);
    WriteDataSet(*again, third);
    ExpectSame(ReadByVtk(third), sample.mesh);
  });
}

TEST_P(PassThrough, TheFallbackWritesTheSame) {
  ForEachEncoding([&](const PassedSample& sample) {
    const DataSetPtr data = ReadDataSet(sample.source);
    Alter(*data, sample.mesh->GetPointData()->GetArray("double"), "double", 11, 1e300);
    FileSource copy = static_cast<const FileSource&>(*data->GetSource());
    LoadAll(*copy.steps[0].root.xml);
    copy.steps[0].root.xml = nullptr;
    const DataSet byVtk("copy", {{"block", copy.steps[0].root.block}},
                        std::make_shared<FileSource>(copy));
    WriteDataSet(byVtk, sample.target);
    ExpectSame(ReadByVtk(sample.target), sample.mesh);
  });
}

INSTANTIATE_TEST_SUITE_P(KindsAndForms, PassThrough,
                         ::testing::Combine(::testing::ValuesIn(Kinds()),
                                            ::testing::ValuesIn(Forms())),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).extension) +
                                  std::get<1>(row.param).name;
                         });

class PassThroughFile : public FolderTest {
 protected:
  void SetUp() override {
    m_mesh = Bricks();
    m_source = In("source.vtu");
    m_target = In("target.vtu");
  }
  void SaveSource(int mode, int compressor) {
    SaveEncoded(Kinds()[0], {mode, 0, compressor, vtkXMLWriter::UInt64, vtkXMLWriter::LittleEndian},
                m_mesh, m_source);
  }

  vtkSmartPointer<vtkDataSet> m_mesh;
  std::string m_source;
  std::string m_target;
};

TEST_F(PassThroughFile, KeepsTheBytesOfBlocksThatHoldTheSameValues) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::ZLIB);
  const DataSetPtr data = ReadDataSet(m_source);
  const auto& xml = *FileNodeOf(*data).xml;
  const auto places = [](const qelhost::PayloadTable& table, const std::string& text) {
    std::vector<std::string> blocks;
    for (std::int64_t block = 0; block < table.BlockCount(); ++block) {
      blocks.push_back(text.substr(
          static_cast<std::size_t>(table.EncodedBegin(block)),
          static_cast<std::size_t>(table.EncodedEnd(block) - table.EncodedBegin(block))));
    }
    return blocks;
  };
  const std::size_t first = 1;  // "double"
  ASSERT_EQ(xml.layout.arrays[first].name, "double");
  const auto before = places(xml.stored[first]->Table(), Contents(m_source));
  ASSERT_GT(before.size(), 10U);
  Alter(*data, m_mesh->GetPointData()->GetArray("double"), "double", 300, -1);
  WriteDataSet(*data, m_target);
  const DataSetPtr again = ReadDataSet(m_target);
  const auto after = places(FileNodeOf(*again).xml->stored[first]->Table(), Contents(m_target));
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t block = 0; block < before.size(); ++block) {
    const bool isAltered = block == 300 * sizeof(double) / 1024;
    EXPECT_EQ(after[block] == before[block], !isAltered) << block;
  }
}

TEST_F(PassThroughFile, SaysWhatTheRangeOfAnAlteredArrayIsNow) {
  double length[2];
  m_mesh->GetPointData()->GetArray("vector")->GetRange(length, -1);  // which is written then
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::NONE);
  ASSERT_THAT(Contents(m_source), HasSubstr("L2_NORM_RANGE"));
  const DataSetPtr data = ReadDataSet(m_source);
  Alter(*data, m_mesh->GetPointData()->GetArray("double"), "double", 300, -8765.4321);
  Alter(*data, m_mesh->GetPointData()->GetArray("vector"), "vector_X", 300, 1e6);
  WriteDataSet(*data, m_target);
  const DataSetPtr again = ReadDataSet(m_target);
  const auto& arrays = FileNodeOf(*again).xml->layout.arrays;
  EXPECT_EQ(arrays[1].tag.Value("RangeMin"), "-8765.4321");
  EXPECT_EQ(arrays[2].name, "vector");
  double range[2];
  m_mesh->GetPointData()->GetArray("vector")->Modified();
  m_mesh->GetPointData()->GetArray("vector")->GetRange(range, -1);
  EXPECT_EQ(std::stod(arrays[2].tag.Value("RangeMax")), range[1]);
  EXPECT_EQ(arrays[2].keysBegin, 0) << "elements with the old range are gone";
}

TEST_F(PassThroughFile, ReadsTheArraysThatAreAskedForAlone) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::ZLIB);
  const DataSetPtr data = ReadDataSet(m_source);
  data->ReadableAtNodes(1, data->VariableNumber("int32"));
  std::set<std::string> loaded;
  for (const auto& [array, pending] : *FileNodeOf(*data).xml->pending) {
    if (pending->IsLoaded()) loaded.insert(array->GetName());
  }
  EXPECT_EQ(loaded, std::set<std::string>{"int32"});
}

TEST_F(PassThroughFile, SharesOneReadingAmongTheComponentsOfAVector) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::NONE);
  const DataSetPtr data = ReadDataSet(m_source);
  for (const char* name : {"vector_X", "vector_Y", "vector_Z"}) {
    const QelFieldData* const field = data->Readable(1, data->VariableNumber(name));
    ASSERT_NE(field, nullptr);
    const int component = name[7] - 'X';
    for (const LgIndex_t n : {0, 100, field->count - 1}) {
      EXPECT_EQ(field->get(field, n),
                m_mesh->GetPointData()->GetArray("vector")->GetComponent(n, component));
    }
  }
}

TEST_F(PassThroughFile, WritesOntoItsOwnSourceAndGoesOn) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::NONE);
  const DataSetPtr data = ReadDataSet(m_source);
  Alter(*data, m_mesh->GetPointData()->GetArray("float"), "float", 8, 0.5);
  WriteDataSet(*data, m_source);
  Alter(*data, m_mesh->GetCellData()->GetArray("int16"), "int16_0 (cell)", 8, 9);
  WriteDataSet(*data, m_source);
  const auto now = ReadByVtk(m_source);
  EXPECT_EQ(now->GetPointData()->GetArray("float")->GetComponent(8, 0), 0.5);
  EXPECT_EQ(now->GetCellData()->GetArray("int16")->GetComponent(8, 0), 9);
}

TEST_F(PassThroughFile, RefusesASourceThatShrankMeanwhile) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::NONE);
  const DataSetPtr data = ReadDataSet(m_source);
  fs::resize_file(m_source, fs::file_size(m_source) / 2);
  try {
    data->Readable(1, data->VariableNumber("ids (cell)"));
    FAIL() << "values were read that are not there";
  } catch (const ValuesError& error) {
    EXPECT_THAT(error.what(), HasSubstr(m_source));
    EXPECT_THAT(error.what(), HasSubstr("changed"));
  }
  EXPECT_THROW(WriteDataSet(*data, m_target), ValuesError);
  EXPECT_FALSE(fs::exists(m_target));
}

TEST_F(PassThroughFile, RefusesToMixWithWhatSomebodyElseWrote) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::NONE);
  const DataSetPtr data = ReadDataSet(m_source);
  fs::last_write_time(m_source, fs::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_THROW(WriteDataSet(*data, m_target), ValuesError);
}

TEST_F(PassThroughFile, GoesOnWithASourceThatLostItsName) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::ZLIB);
  const DataSetPtr data = ReadDataSet(m_source);
  const std::string was = Contents(m_source);
  fs::remove(m_source);
  WriteDataSet(*data, m_target);
  EXPECT_EQ(Contents(m_target), was);
}

TEST_F(PassThroughFile, SaysWhichFileHoldsACompressedBlockThatIsDamaged) {
  SaveSource(vtkXMLWriter::Appended, vtkXMLWriter::ZLIB);
  std::string text = Contents(m_source);
  {
    const DataSetPtr data = ReadDataSet(m_source);
    const auto& table = FileNodeOf(*data).xml->stored[1]->Table();
    text[static_cast<std::size_t>(table.EncodedBegin(3) + 9)] ^= 0x55;
  }
  filetesting::Save(m_source, text);
  const DataSetPtr data = ReadDataSet(m_source);
  try {
    data->Readable(1, data->VariableNumber("double"));
    FAIL() << "a damaged block was read";
  } catch (const ValuesError& error) {
    EXPECT_THAT(error.what(), HasSubstr(m_source));
    EXPECT_THAT(error.what(), HasSubstr("damaged"));
  }
  // It can be tried again, and what is not damaged is there.
  EXPECT_THROW(data->Readable(1, data->VariableNumber("double")), ValuesError);
  EXPECT_NE(data->Readable(1, data->VariableNumber("float")), nullptr);
}

TEST_F(PassThroughFile, NarrowConnectivityIsWrittenAsWideAsItWas) {
  for (const bool isWide : {true, false}) {
    if (!isWide) vtkUnstructuredGrid::SafeDownCast(m_mesh)->GetCells()->ConvertTo32BitStorage();
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetDataModeToAppended();
    writer->SetFileName(m_source.c_str());
    writer->SetInputData(m_mesh);
    ASSERT_EQ(writer->Write(), 1);
    const DataSetPtr data = ReadDataSet(m_source);
    auto* const grid = vtkUnstructuredGrid::SafeDownCast(FileNodeOf(*data).block);
    EXPECT_FALSE(grid->GetCells()->IsStorage64Bit());
    // A text file is written by VTK.
    WriteDataSet(*data, In("other.vtk"));
    FileSource copy = static_cast<const FileSource&>(*data->GetSource());
    copy.steps[0].root.xml = nullptr;
    const DataSet byVtk("copy", {{"block", copy.steps[0].root.block}},
                        std::make_shared<FileSource>(copy));
    WriteDataSet(byVtk, m_target);
    const std::string type = isWide ? "Int64" : "Int32";
    EXPECT_THAT(Contents(m_target), HasSubstr("type=\"" + type + "\" Name=\"connectivity\""));
    ExpectSame(ReadByVtk(m_target), ReadByVtk(m_source));
  }
}

/// Layouts that are left to VTK, which reads and writes them as ever.
struct LayoutRow {
  const char* name;
  void (*change)(vtkDataSet* mesh, vtkXMLUnstructuredGridWriter* writer, std::string* text);
};

class LeftToVtk : public PassThroughFile, public ::testing::WithParamInterface<LayoutRow> {};

TEST_P(LeftToVtk, KeepsItsValues) {
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  writer->SetCompressorTypeToNone();
  writer->SetFileName(m_source.c_str());
  GetParam().change(m_mesh, writer, nullptr);
  writer->SetInputData(m_mesh);
  ASSERT_EQ(writer->Write(), 1);
  std::string text = Contents(m_source);
  GetParam().change(m_mesh, nullptr, &text);
  filetesting::Save(m_source, text);

  const DataSetPtr data = ReadDataSet(m_source);
  EXPECT_EQ(FileNodeOf(*data).xml, nullptr);
  const auto expected = ReadByVtk(m_source);
  Alter(*data, expected->GetPointData()->GetArray("float"), "float", 4, 1.5);
  WriteDataSet(*data, m_target);
  ExpectSame(ReadByVtk(m_target), expected);
}

const LayoutRow kLayouts[] = {
    {"Text",
     [](vtkDataSet*, vtkXMLUnstructuredGridWriter* writer, std::string*) {
       if (writer != nullptr) writer->SetDataModeToAscii();
     }},
    {"Pieces",
     [](vtkDataSet*, vtkXMLUnstructuredGridWriter* writer, std::string*) {
       if (writer != nullptr) writer->SetNumberOfPieces(2);
     }},
    {"StringsAtNodes",
     [](vtkDataSet* mesh, vtkXMLUnstructuredGridWriter* writer, std::string*) {
       if (writer == nullptr) return;
       vtkNew<vtkStringArray> names;
       names->SetName("names");
       names->SetNumberOfTuples(mesh->GetNumberOfPoints());
       mesh->GetPointData()->AddArray(names);
     }},
    {"OtherKeys",
     [](vtkDataSet* mesh, vtkXMLUnstructuredGridWriter* writer, std::string*) {
       if (writer == nullptr) return;
       vtkDataArray* const array = mesh->GetPointData()->GetArray("double");
       array->GetInformation()->Set(vtkAbstractArray::GUI_HIDE(), 1);
     }},
    {"SharedNumbers",
     [](vtkDataSet*, vtkXMLUnstructuredGridWriter*, std::string* text) {
       if (text == nullptr) return;
       const auto offsetOf = [text](const char* name) {
         return text->find("offset=\"", text->find(name)) + 8;
       };
       const std::size_t from = offsetOf("Name=\"uint64\"");
       const std::size_t to = offsetOf("Name=\"int64\"");
       const std::size_t length = text->find('"', from) - from;
       text->replace(to, text->find('"', to) - to, text->substr(from, length));
     }},
};

INSTANTIATE_TEST_SUITE_P(Layouts, LeftToVtk, ::testing::ValuesIn(kLayouts),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Base64, ReadsBackWhatItWrote) {
  for (std::size_t size = 0; size < 70; ++size) {
    std::vector<char> bytes;
    for (std::size_t i = 0; i < size; ++i) bytes.push_back(static_cast<char>(i * 91 + size));
    std::string text;
    qelhost::AppendBase64(bytes.data(), bytes.size(), text);
    std::vector<char> back;
    std::size_t used = 0;
    EXPECT_TRUE(qelhost::DecodeBase64(text.data(), text.size(), back, used)) << size;
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(used, text.size());
  }
}

TEST(Base64, RefusesWhatIsNone) {
  std::vector<char> bytes;
  std::size_t used = 0;
  for (const std::string text : {"AA A", "A===", "AAA", "AAA$", "A=AA", "=AAA"}) {
    bytes.clear();
    EXPECT_FALSE(qelhost::DecodeBase64(text.data(), text.size(), bytes, used)) << text;
  }
}

TEST(Codecs, RefuseBytesOfAnotherLength) {
  const std::vector<char> numbers(5000, 'n');
  for (const char* name :
       {"vtkZLibDataCompressor", "vtkLZ4DataCompressor", "vtkLZMADataCompressor"}) {
    const qelhost::BlockCodec& codec = *qelhost::FindCodec(name);
    const std::vector<char> encoded = codec.encode(numbers.data(), numbers.size());
    std::vector<char> back(numbers.size() + 1);
    EXPECT_TRUE(codec.decode(encoded.data(), encoded.size(), back.data(), numbers.size())) << name;
    EXPECT_FALSE(codec.decode(encoded.data(), encoded.size(), back.data(), numbers.size() + 1))
        << name;
    EXPECT_FALSE(codec.decode(encoded.data(), encoded.size(), back.data(), numbers.size() - 1))
        << name;
    EXPECT_FALSE(codec.decode(encoded.data(), encoded.size() - 1, back.data(), numbers.size()))
        << name;
  }
  EXPECT_EQ(qelhost::FindCodec("vtkOtherCompressor"), nullptr);
}

}  // namespace
