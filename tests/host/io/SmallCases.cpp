#include "SmallCases.h"

#include <cstdint>
#include <vector>

#include "FileTesting.h"

namespace filetesting {
namespace {

std::string In(const std::string& folder, const std::string& name) { return folder + "/" + name; }

constexpr char kEnSightCase[] =
    "FORMAT\ntype: ensight gold\nGEOMETRY\nmodel: bar.geo\nVARIABLE\n"
    "scalar per node: p bar.p\nscalar per element: q bar.q\n";
constexpr char kEnSightGeometry[] =
    "two bricks\nside by side\nnode id assign\nelement id assign\npart\n         1\nbar\n"
    "coordinates\n        12\n"
    " 0.00000e+00\n 1.00000e+00\n 2.00000e+00\n 0.00000e+00\n 1.00000e+00\n 2.00000e+00\n"
    " 0.00000e+00\n 1.00000e+00\n 2.00000e+00\n 0.00000e+00\n 1.00000e+00\n 2.00000e+00\n"
    " 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n"
    " 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n"
    " 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n 0.00000e+00\n"
    " 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n 1.00000e+00\n"
    "hexa8\n         2\n"
    "         1         2         5         4         7         8        11        10\n"
    "         2         3         6         5         8         9        12        11\n";

std::string FoamHeader(const std::string& type, const std::string& object) {
  return "FoamFile\n{\n version 2.0;\n format ascii;\n class " + type + ";\n object " + object +
         ";\n}\n";
}

/// Of the binary EnSight files: lines of 80 bytes, numbers of 4.
std::string Line(std::string text) {
  text.resize(80, ' ');
  return text;
}

template <class T>
std::string Numbers(const std::vector<T>& values) {
  return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

}  // namespace

void SaveEnSightCase(const std::string& folder) {
  Save(In(folder, "bar.case"), kEnSightCase);
  Save(In(folder, "bar.geo"), kEnSightGeometry);
  std::string pressure = "p\npart\n         1\ncoordinates\n";
  for (int node = 1; node <= 12; ++node) pressure += " " + std::to_string(node) + ".50000e+00\n";
  Save(In(folder, "bar.p"), pressure);
  Save(In(folder, "bar.q"), "q\npart\n         1\nhexa8\n 3.00000e+00\n 4.00000e+00\n");
}

void SaveBinaryEnSightCase(const std::string& folder) {
  using Int = std::int32_t;
  Save(In(folder, "bar.case"), kEnSightCase);
  std::vector<float> places;
  for (int axis = 0; axis < 3; ++axis) {
    for (int n = 0; n < 12; ++n) {
      places.push_back(static_cast<float>(axis == 0 ? n % 3 : axis == 1 ? n / 3 % 2 : n / 6));
    }
  }
  Save(In(folder, "bar.geo"),
       Line("C Binary") + Line("two bricks") + Line("side by side") + Line("node id assign") +
           Line("element id assign") + Line("part") + Numbers<Int>({1}) + Line("bar") +
           Line("coordinates") + Numbers<Int>({12}) + Numbers(places) + Line("hexa8") +
           Numbers<Int>({2}) + Numbers<Int>({1, 2, 5, 4, 7, 8, 11, 10, 2, 3, 6, 5, 8, 9, 12, 11}));
  std::vector<float> pressure;
  for (int n = 0; n < 12; ++n) pressure.push_back(static_cast<float>(n) + 1.5F);
  Save(In(folder, "bar.p"),
       Line("p") + Line("part") + Numbers<Int>({1}) + Line("coordinates") + Numbers(pressure));
  Save(In(folder, "bar.q"),
       Line("q") + Line("part") + Numbers<Int>({1}) + Line("hexa8") + Numbers<float>({3, 4}));
}

void SaveFoamCase(const std::string& folder) {
  fs::create_directories(In(folder, "constant/polyMesh"));
  fs::create_directories(In(folder, "system"));
  fs::create_directories(In(folder, "1"));
  Save(In(folder, "box.foam"), "");
  Save(In(folder, "system/controlDict"),
       FoamHeader("dictionary", "controlDict") +
           "startTime 0;\nendTime 1;\ndeltaT 1;\nwriteControl timeStep;\nwriteInterval 1;\n");
  const std::string mesh = In(folder, "constant/polyMesh/");
  Save(mesh + "points", FoamHeader("vectorField", "points") +
                            "8\n((0 0 0)(1 0 0)(1 1 0)(0 1 0)(0 0 1)(1 0 1)(1 1 1)(0 1 1))\n");
  Save(mesh + "faces", FoamHeader("faceList", "faces") +
                           "6\n(4(0 3 2 1)4(4 5 6 7)4(0 1 5 4)4(1 2 6 5)4(2 3 7 6)4(3 0 4 7))\n");
  Save(mesh + "owner", FoamHeader("labelList", "owner") + "6\n(0 0 0 0 0 0)\n");
  Save(mesh + "neighbour", FoamHeader("labelList", "neighbour") + "0\n()\n");
  Save(mesh + "boundary", FoamHeader("polyBoundaryMesh", "boundary") +
                              "1\n(\nwalls { type wall; nFaces 6; startFace 0; }\n)\n");
  Save(In(folder, "1/p"), FoamHeader("volScalarField", "p") +
                              "dimensions [0 2 -2 0 0 0 0];\ninternalField nonuniform List<scalar> "
                              "1(7.5);\nboundaryField { walls { type zeroGradient; } }\n");
}

}  // namespace filetesting
