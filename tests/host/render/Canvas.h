// A window without a window system that shows a scene, and its pixels.
#pragma once

#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "EglWindow.h"
#include "Frame.h"
#include "PlotScene.h"

namespace rendertests {

using Pixel = std::array<int, 3>;

inline int Distance(const Pixel& a, const Pixel& b) {
  return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
}

/// Rows from the bottom, three bytes a pixel.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> rgb;

  Pixel At(double x, double y) const {
    const auto place = 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x));
    return {rgb[place], rgb[place + 1], rgb[place + 2]};
  }
  /// How many pixels are about of the colour.
  int CountNear(const Pixel& colour, int distance) const {
    int count = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) count += Distance(At(x, y), colour) <= distance ? 1 : 0;
    }
    return count;
  }
  /// How many pixels differ clearly.
  int CountOthers(const Pixels& other) const {
    int count = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        count += Distance(At(x, y), other.At(x, y)) > 30 ? 1 : 0;
      }
    }
    return count;
  }
};

class Canvas {
 public:
  Canvas(int width, int height) : m_width(width), m_height(height) {
    if (!m_window->Open(width, height)) throw std::runtime_error("no OpenGL without a window");
    m_window->AddRenderer(scene.Margin());
    m_window->AddRenderer(scene.Plot());
  }
  ~Canvas() {
    m_window->RemoveRenderer(scene.Plot());
    m_window->RemoveRenderer(scene.Margin());
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  void Update(qelhost::Frame& frame, const qelhost::PlotLook& look) {
    scene.Update(frame, look, m_width, m_height);
  }

  Pixels Draw(qelhost::Frame& frame, const qelhost::PlotLook& look) {
    Update(frame, look);
    m_window->Render();
    // Or the pixels would be another window's.
    if (!m_window->IsCurrent()) throw std::runtime_error("the window cannot draw");
    vtkNew<vtkUnsignedCharArray> bytes;
    m_window->GetPixelData(0, 0, m_width - 1, m_height - 1, 0, bytes.Get(), 0);
    Pixels pixels{m_width, m_height, {}};
    pixels.rgb.assign(bytes->GetPointer(0), bytes->GetPointer(0) + bytes->GetNumberOfValues());
    return pixels;
  }

  qelhost::PlotScene scene;

 private:
  int m_width;
  int m_height;
  vtkNew<qelhost::EglWindow> m_window;
};

}  // namespace rendertests
