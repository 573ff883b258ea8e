// What compressed arrays say of their blocks: it is believed only as far as it can be true.
#include <vtkLZ4DataCompressor.h>
#include <vtkLZMADataCompressor.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkZLibDataCompressor.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <vector>

#include "HostileFiles.h"

namespace filetesting {
namespace {

using qelhost::ReadDataSet;

constexpr std::size_t kBlockBytes = 4096;

/// Number of blocks, size of a block, size of the last, then their encoded sizes.
using BlockSizes = std::vector<std::uint64_t>;

class CompressedBlocks : public HostileFiles {
 protected:
  /// An image of one array "a", in raw appended data whose entries have 8 bytes.
  std::string SaveZeros(vtkDataCompressor* compressor, int side, std::size_t blockBytes) {
    auto image = vtkSmartPointer<vtkImageData>::New();
    image->SetDimensions(side, side, side);
    vtkNew<vtkDoubleArray> zeros;
    zeros->SetName("a");
    zeros->SetNumberOfTuples(image->GetNumberOfPoints());
    zeros->FillValue(0);
    image->GetPointData()->AddArray(zeros);
    vtkNew<vtkXMLImageDataWriter> writer;
    writer->SetFileName(In("a.vti").c_str());
    writer->SetInputData(image);
    writer->SetCompressor(compressor);
    writer->SetBlockSize(blockBytes);
    writer->SetHeaderTypeToUInt64();
    writer->SetDataModeToAppended();
    writer->EncodeAppendedDataOff();
    EXPECT_EQ(writer->Write(), 1);
    return In("a.vti");
  }

  /// What reading says when the block sizes of a good file are altered.
  std::string ErrorAfter(const std::function<void(BlockSizes&)>& alter) {
    vtkNew<vtkZLibDataCompressor> zlib;
    const std::string path = SaveZeros(zlib, 9, kBlockBytes);
    std::string text = Contents(path);
    const std::size_t begin = text.find('_', text.find("<AppendedData")) + 1;
    BlockSizes sizes(1);
    std::memcpy(sizes.data(), text.data() + begin, 8);
    sizes.resize(3 + sizes[0]);
    std::memcpy(sizes.data(), text.data() + begin, 8 * sizes.size());
    EXPECT_EQ(sizes[0], 2U);
    EXPECT_EQ(sizes[1], kBlockBytes);
    EXPECT_EQ(sizes[2], 9 * 9 * 9 * 8 - kBlockBytes);
    alter(sizes);
    std::memcpy(&text[begin], sizes.data(), 8 * sizes.size());
    Save(path, text);
    return ReadError(path);
  }

  std::string Refused() const {
    return In("a.vti") + ": damaged: array \"a\" is not as long as it says";
  }
};

TEST_F(CompressedBlocks, ThatAreTrueAreRead) {
  EXPECT_EQ(ErrorAfter([](BlockSizes&) {}), "");
}

TEST_F(CompressedBlocks, OfNoBytesAreRefused) {
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[1] = 0; }), Refused());
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[1] = sizes[2] = 0; }), Refused());
}

TEST_F(CompressedBlocks, WhoseLastIsLargerThanTheOthersAreRefused) {
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[2] = sizes[1] + 1; }), Refused());
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[2] = ~std::uint64_t{0}; }), Refused());
}

TEST_F(CompressedBlocks, ThatNoNumberCountsAreRefused) {
  // Both times two, the blocks' bytes are few again.
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[1] = std::uint64_t{1} << 63; }), Refused());
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[0] = ~std::uint64_t{0}; }), Refused());
}

TEST_F(CompressedBlocks, BehindTheEndOfTheFileAreRefused) {
  for (const std::size_t block : {3, 4}) {
    for (const std::uint64_t encoded : {std::uint64_t{1} << 20, ~std::uint64_t{0} - 8}) {
      EXPECT_EQ(ErrorAfter([&](BlockSizes& sizes) { sizes[block] = encoded; }), Refused());
    }
  }
}

/// Room would be made for all of it.
TEST_F(CompressedBlocks, ThatGrowBeyondAllCompressionAreRefused) {
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[1] = std::uint64_t{1} << 30; }), Refused());
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[1] = sizes[2] = std::uint64_t{1} << 30; }),
            Refused());
  EXPECT_EQ(ErrorAfter([](BlockSizes& sizes) { sizes[4] = 0; }), Refused());
}

/// Nothing compresses better than zeros in one large block.
TEST_F(CompressedBlocks, ThatGrowAsMuchAsAnyAreRead) {
  vtkNew<vtkZLibDataCompressor> zlib;
  zlib->SetCompressionLevel(9);
  vtkNew<vtkLZ4DataCompressor> lz4;
  vtkNew<vtkLZMADataCompressor> lzma;
  constexpr int kSide = 100;
  for (vtkDataCompressor* compressor :
       {static_cast<vtkDataCompressor*>(zlib), static_cast<vtkDataCompressor*>(lz4),
        static_cast<vtkDataCompressor*>(lzma)}) {
    const std::string path = SaveZeros(compressor, kSide, std::size_t{1} << 30);
    EXPECT_EQ(ReadError(path), "") << compressor->GetClassName();
    EXPECT_EQ(ReadDataSet(path)->ZoneCount(), 1);
  }
}

/// A few bytes of zeros would fill the memory, once for each array.
TEST_F(CompressedBlocks, SharedByManyAreRefused) {
  vtkNew<vtkZLibDataCompressor> zlib;
  constexpr int kSide = 100;  // 8 million bytes
  const std::string path = SaveZeros(zlib, kSide, std::size_t{1} << 20);
  const std::string text = Contents(path);
  const std::size_t begin = text.find("<DataArray");
  const std::size_t end = text.find("</PointData>");
  const std::string array = text.substr(begin, end - begin);
  const std::size_t name = array.find("Name=\"a\"") + 6;
  const auto errorOf = [&](int count) {
    std::string arrays;
    for (int n = 0; n < count; ++n) {
      arrays += std::string(array).replace(name, 1, "a" + std::to_string(n));
    }
    Save(path, text.substr(0, begin) + arrays + text.substr(end));
    return ReadError(path);
  };
  EXPECT_EQ(errorOf(3), "");
  EXPECT_THAT(errorOf(60), testing::HasSubstr("shares its numbers with too many others"));
}

}  // namespace
}  // namespace filetesting
