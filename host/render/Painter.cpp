#include "Picture.h"

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkUnsignedCharArray.h>

#include <cstring>
#include <numeric>

#include "EglWindow.h"
#include "PlotScene.h"

namespace qelhost {
namespace {

PlotLook LookOf(const PictureOptions& options) {
  PlotLook look;
  look.variable = options.variable;
  look.min = options.min;
  look.max = options.max;
  look.caption = options.caption;
  // Pictures have no window system to go by: all of one grows with it.
  look.textSize = options.height / 40.0;
  return look;
}

class EglPainter : public Painter {
 public:
  Picture Draw(Frame& frame, const PictureOptions& options) override {
    vtkNew<EglWindow> window;
    if (!window->Open(options.width, options.height)) {
      throw PictureError("pictures cannot be drawn: no OpenGL without a window system (EGL)");
    }
    PlotScene scene;
    scene.Update(frame, LookOf(options), options.width, options.height);
    window->AddRenderer(scene.Margin());
    window->AddRenderer(scene.Plot());
    window->Render();
    Picture picture{options.width, options.height, {}};
    const std::size_t row = 3 * static_cast<std::size_t>(options.width);
    picture.rgb.resize(row * static_cast<std::size_t>(options.height));
    vtkNew<vtkUnsignedCharArray> pixels;
    constexpr int kFrontBuffer = 0;
    window->GetPixelData(0, 0, options.width - 1, options.height - 1, kFrontBuffer, pixels.Get(),
                         0);
    // VTK counts rows from the bottom.
    for (int y = 0; y < options.height; ++y) {
      std::memcpy(picture.rgb.data() + row * static_cast<std::size_t>(options.height - 1 - y),
                  pixels->GetPointer(static_cast<vtkIdType>(row) * y), row);
    }
    window->RemoveRenderer(scene.Plot());
    window->RemoveRenderer(scene.Margin());
    return picture;
  }

  std::string Png(const std::vector<Picture>& pictures) override {
    const int height = pictures.front().height;
    const int width = std::accumulate(pictures.begin(), pictures.end(), 0,
                                      [](int sum, const Picture& one) { return sum + one.width; });
    vtkNew<vtkImageData> image;
    image->SetDimensions(width, height, 1);
    image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
    int left = 0;
    for (const Picture& picture : pictures) {
      const std::size_t row = 3 * static_cast<std::size_t>(picture.width);
      for (int y = 0; y < height; ++y) {
        std::memcpy(image->GetScalarPointer(left, height - 1 - y, 0),
                    picture.rgb.data() + row * static_cast<std::size_t>(y), row);
      }
      left += picture.width;
    }
    // To a file, the library under the writer would print lines of its own when the disk is full.
    vtkNew<vtkPNGWriter> writer;
    writer->SetInputData(image);
    writer->WriteToMemoryOn();
    writer->Write();
    vtkUnsignedCharArray* const bytes = writer->GetResult();
    if (writer->GetErrorCode() != 0 || bytes == nullptr || bytes->GetNumberOfValues() == 0) {
      throw PictureError("the picture cannot be encoded");
    }
    const unsigned char* const first = bytes->GetPointer(0);
    return std::string(first, first + bytes->GetNumberOfValues());
  }
};

}  // namespace
}  // namespace qelhost

extern "C" __attribute__((visibility("default"))) qelhost::Painter* QelMakePainter() {
  return new qelhost::EglPainter();
}
