#include "ToolPictures.h"

#include <string_view>

namespace qelvane::qelutiltools {

namespace {

struct Ink {
  char letter;
  unsigned char red;
  unsigned char green;
  unsigned char blue;
};

constexpr Ink kInks[] = {
    {'.', 255, 255, 255},  // see-through
    {'#', 20, 24, 32},     // outlines
    {'o', 250, 250, 252},  // inside of the arrow: all but white, so that it shows
    {'g', 150, 158, 170},  // grid lines
    {'b', 24, 90, 190},    // what is picked
    {'s', 214, 230, 252},  // shades of a solid, from its highlight on
    {'l', 150, 190, 245}, {'m', 84, 140, 222}, {'d', 44, 92, 170}, {'e', 26, 58, 118},
};

constexpr std::size_t kEdge = kToolPictureEdge;
using Drawing = std::array<std::string_view, kEdge>;

constexpr Ink InkOf(char letter) {
  for (const Ink& ink : kInks) {
    if (ink.letter == letter) return ink;
  }
  throw "a drawing uses a letter that is no ink";  // stops the compiler
}

constexpr ToolPicture Paint(const Drawing& drawing) {
  ToolPicture picture{};
  std::size_t byte = 0;
  for (const std::string_view row : drawing) {
    if (row.size() != kEdge) throw "a row of a drawing has not 32 pixels";
    for (const char letter : row) {
      const Ink ink = InkOf(letter);
      picture[byte++] = static_cast<char>(ink.red);
      picture[byte++] = static_cast<char>(ink.green);
      picture[byte++] = static_cast<char>(ink.blue);
    }
  }
  return picture;
}

// clang-format off
constexpr Drawing kElementDrawing = {
    "................................",
    "................................",
    "................................",
    "...ggggggggggggggggggggggggg....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...g.......g.......g.......g....",
    "...ggggggggggggggggggggggggg....",
    "...g.......gbbbbbbbg.......g....",
    "...g.......gbbbbbbbg.......g....",
    "...g.......gbbbbbbbg.......g....",
    "...g.......gbbb#bbbg.......g....",
    "...g.......gbbb##bbg.......g....",
    "...g.......gbbb#o#bg.......g....",
    "...g.......gbbb#oo#g.......g....",
    "...gggggggggggg#ooo#gggggggg....",
    "...g.......g...#oooo#......g....",
    "...g.......g...#ooooo#.....g....",
    "...g.......g...#oooooo#....g....",
    "...g.......g...#ooooooo#...g....",
    "...g.......g...#oooooooo#..g....",
    "...g.......g...#ooooo#####.g....",
    "...g.......g...#oo#oo#.....g....",
    "...gggggggggggg#o#g#oo#ggggg....",
    "...............##..#oo#.........",
    "...............#....#oo#........",
    "....................###.........",
    "................................",
};

constexpr Drawing kRectangleDrawing = {
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "....bbbbbbbbbbbbbbbbbbbbbbbbb...",
    "....bbbbbbbbbbbbbbbbbbbbbbbbb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bb.....................bb...",
    "....bbbbbbbbbbbbbbbbbbbbbbbbb...",
    "....bbbbbbbbbbbbbbbbbbbbbbbbb...",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
    "................................",
};

constexpr Drawing kCircleDrawing = {
    "................................",
    "................................",
    "................................",
    "..............bbbb..............",
    "...........bbbbbbbbbb...........",
    ".........bbbbbb..bbbbbb.........",
    "........bbb..........bbb........",
    ".......bbb............bbb.......",
    "......bbb..............bbb......",
    ".....bbb................bbb.....",
    ".....bb..................bb.....",
    "....bb....................bb....",
    "....bb....................bb....",
    "....bb....................bb....",
    "...bbb....................bbb...",
    "...bb......................bb...",
    "...bb......................bb...",
    "...bbb....................bbb...",
    "....bb....................bb....",
    "....bb....................bb....",
    "....bb....................bb....",
    ".....bb..................bb.....",
    ".....bbb................bbb.....",
    "......bbb..............bbb......",
    ".......bbb............bbb.......",
    "........bbb..........bbb........",
    ".........bbbbbb..bbbbbb.........",
    "...........bbbbbbbbbb...........",
    "..............bbbb..............",
    "................................",
    "................................",
    "................................",
};

constexpr Drawing kPolygonDrawing = {
    "................................",
    "................................",
    "................................",
    "..............b.................",
    ".............bbbbb..............",
    "............bbbbbbbb............",
    "..........bbbb...bbbbbb.........",
    ".........bbb........bbbbbb......",
    "........bbb............bbbbbb...",
    ".......bbb...............bbbbb..",
    ".....bbbb..................bb...",
    "....bbb...................bb....",
    "...bbb...................bbb....",
    "....bb...................bb.....",
    "....bb..................bb......",
    "....bb.................bbb......",
    ".....bb................bb.......",
    ".....bb...............bb........",
    ".....bb..............bbb........",
    ".....bbb..............bb........",
    "......bb..............bb........",
    "......bb..............bbb.......",
    "......bb...............bb.......",
    ".......bb..............bb.......",
    ".......bb..............bbb......",
    ".......bb...............bb......",
    ".......bbbbbbbbbbbbbbbbbbb......",
    "........bbbbbbbbbbbbbbbbbbb.....",
    ".........................b......",
    "................................",
    "................................",
    "................................",
};

constexpr Drawing kCubeDrawing = {
    "................................",
    "................................",
    "................................",
    "................................",
    "...........##################...",
    "..........#llllllllllllllll##...",
    "........##lllllllllllllll##d#...",
    ".......##lllllllllllllll##dd#...",
    "......##lllllllllllllll##ddd#...",
    ".....##lllllllllllllll##dddd#...",
    "....#llllllllllllllll#dddddd#...",
    "...##################ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#ddddddd#...",
    "...#mmmmmmmmmmmmmmmm#dddddd#....",
    "...#mmmmmmmmmmmmmmmm#dddd##.....",
    "...#mmmmmmmmmmmmmmmm#ddd##......",
    "...#mmmmmmmmmmmmmmmm#dd##.......",
    "...#mmmmmmmmmmmmmmmm#d##........",
    "...#mmmmmmmmmmmmmmmm##..........",
    "...##################...........",
    "................................",
    "................................",
    "................................",
};

constexpr Drawing kSphereDrawing = {
    "................................",
    "................................",
    "................................",
    "................................",
    "...........####ll####...........",
    ".........##ssllllllmm##.........",
    "........#ssssslllllmmmm#........",
    ".......#ssssssllllllmmmm#.......",
    "......#sssssssllllllmmmmd#......",
    ".....#sssssssllllllmmmmmdd#.....",
    ".....#sssssssllllllmmmmmdd#.....",
    "....#lsssssllllllllmmmmmddd#....",
    "....#lllslllllllllmmmmmmddd#....",
    "....#llllllllllllmmmmmmmddd#....",
    "....#lllllllllllmmmmmmmdddd#....",
    "....lllllllllllmmmmmmmddddde....",
    "....mlllllllllmmmmmmmmddddee....",
    "....#mllllllmmmmmmmmmddddde#....",
    "....#mmmmmmmmmmmmmmmdddddee#....",
    "....#mmmmmmmmmmmmmmddddddee#....",
    "....#mmmmmmmmmmmmdddddddeee#....",
    ".....#mmmmmmmmmmdddddddeee#.....",
    ".....#mmmmmmmmddddddddeeee#.....",
    "......#ddddddddddddddeeee#......",
    ".......#dddddddddddeeeee#.......",
    "........#ddddddddeeeeee#........",
    ".........##dddeeeeeee##.........",
    "...........####ee####...........",
    "................................",
    "................................",
    "................................",
    "................................",
};
// clang-format on

}  // namespace

constexpr ToolPicture kElementPicture = Paint(kElementDrawing);
constexpr ToolPicture kRectanglePicture = Paint(kRectangleDrawing);
constexpr ToolPicture kCirclePicture = Paint(kCircleDrawing);
constexpr ToolPicture kPolygonPicture = Paint(kPolygonDrawing);
constexpr ToolPicture kCubePicture = Paint(kCubeDrawing);
constexpr ToolPicture kSpherePicture = Paint(kSphereDrawing);

}  // namespace qelvane::qelutiltools
