// Looking at a file before its reader does: long lines and words, block after block, and a file
// that somebody else cuts off meanwhile.
#include "FileCursor.h"

#include <vtkNew.h>
#include <vtkUnstructuredGridWriter.h>

#include <gmock/gmock.h>

#include <functional>

#include "DataSetFiles.h"
#include "FileTesting.h"
#include "LegacyCheck.h"
#include "ReadWatch.h"

namespace filetesting {
namespace {

using qelhost::ByteFile;
using qelhost::CheckLegacyFile;
using qelhost::FileCursor;
using qelhost::FileError;

class FileCursors : public FolderTest {
 protected:
  std::string Saved(const std::string& text) {
    Save(In("a.vtk"), text);
    return In("a.vtk");
  }
  std::string SaveBricks(bool isBinary) {
    vtkNew<vtkUnstructuredGridWriter> writer;
    writer->SetFileName(In("a.vtk").c_str());
    writer->SetInputDataObject(TwoBricks());
    if (isBinary) writer->SetFileTypeToBinary();
    EXPECT_EQ(writer->Write(), 1);
    return In("a.vtk");
  }
  static std::string ErrorOf(const std::function<void()>& body) {
    try {
      body();
    } catch (const FileError& error) {
      return error.what();
    }
    return {};
  }
};

/// More than one block.
constexpr std::size_t kLong = 600000;

TEST_F(FileCursors, WordsAndLinesAreWhatStandsBetweenBlanks) {
  const ByteFile file(Saved("  one\ttwo \n rest of it\n \t\nlast"));
  FileCursor cursor(file);
  EXPECT_EQ(cursor.Word(), "one");
  EXPECT_EQ(cursor.Peek(4), "\ttwo");
  EXPECT_TRUE(cursor.PassWord());
  EXPECT_TRUE(cursor.PassLineIsBlank());
  EXPECT_EQ(cursor.Line(), " rest of it");
  EXPECT_TRUE(cursor.PassLineIsBlank());
  EXPECT_EQ(cursor.Peek(100), "last");
  EXPECT_FALSE(cursor.PassLineIsBlank());
  EXPECT_TRUE(cursor.IsAtEnd());
  EXPECT_EQ(cursor.Word(), "");
  EXPECT_FALSE(cursor.PassWord());
  EXPECT_EQ(cursor.Line(), "");
}

TEST_F(FileCursors, OfLongOnesTheBeginningIsKept) {
  const std::string word(kLong, 'w');
  const std::string blanks(kLong, ' ');
  const ByteFile file(Saved(word + " second" + blanks + "third " + word + "\n" + blanks + "\nend"));
  FileCursor cursor(file);
  EXPECT_EQ(cursor.Word(), word.substr(0, FileCursor::kLongestKept));
  EXPECT_EQ(cursor.Place(), static_cast<std::int64_t>(kLong));
  EXPECT_EQ(cursor.Word(), "second");
  EXPECT_EQ(cursor.Word(), "third");
  EXPECT_EQ(cursor.Line(), (" " + word).substr(0, FileCursor::kLongestKept));
  EXPECT_TRUE(cursor.PassLineIsBlank());
  EXPECT_EQ(cursor.Take(), 'e');
  cursor.GoTo(static_cast<std::int64_t>(kLong) + 1);
  EXPECT_EQ(cursor.Word(), "second");
  EXPECT_EQ(cursor.BytesLeft(), file.Size() - cursor.Place());
}

TEST_F(FileCursors, WordsAcrossBlocksAreWhole) {
  std::string text;
  for (int n = 0; text.size() < kLong; ++n) text += std::to_string(n) + " ";
  const ByteFile file(Saved(text));
  FileCursor cursor(file);
  int n = 0;
  for (std::string word = cursor.Word(); !word.empty(); word = cursor.Word(), ++n) {
    ASSERT_EQ(word, std::to_string(n));
  }
  EXPECT_EQ(text.size(),
            text.rfind(std::to_string(n - 1) + " ") + std::to_string(n - 1).size() + 1);
}

TEST_F(FileCursors, AFileThatIsCutOffMeanwhileIsAnError) {
  const std::string path = Saved(std::string(kLong, 'w'));
  const ByteFile file(path);
  FileCursor cursor(file);
  EXPECT_EQ(cursor.Take(), 'w');
  fs::resize_file(path, kLong / 2);
  EXPECT_EQ(ErrorOf([&] { cursor.PassWord(); }), path + ": damaged: the file is cut off");
}

TEST_F(FileCursors, ALegacyFileThatIsCutOffWhileItIsCheckedIsAnError) {
  for (const bool isBinary : {false, true}) {
    const std::string path = SaveBricks(isBinary);
    const ByteFile file(path);
    EXPECT_TRUE(CheckLegacyFile(file));
    fs::resize_file(path, fs::file_size(path) / 2);
    EXPECT_EQ(ErrorOf([&] { CheckLegacyFile(file); }), path + ": damaged: the file is cut off");
  }
}

TEST_F(FileCursors, ALegacyFileThatIsWrittenWhileItIsReadIsAnError) {
  const std::string path = SaveBricks(false);
  bool isAsked = false;
  const qelhost::ReadWatch watch([&](double) {
    isAsked = true;
    std::ofstream(path, std::ios::app) << "\n";
    return true;
  });
  EXPECT_EQ(ErrorOf([&] { qelhost::ReadDataSet(path); }),
            path + ": was changed by somebody else since it was opened");
  EXPECT_TRUE(isAsked);
}

}  // namespace
}  // namespace filetesting
