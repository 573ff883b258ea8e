#include "Geometry.h"

#include <gtest/gtest.h>

namespace qelhost {
namespace {

Geometry OfType(QelGeomType_e type) {
  Geometry geometry;
  geometry.type = type;
  return geometry;
}

TEST(GeometryList, WalksInCreationOrder) {
  GeometryList list;
  EXPECT_EQ(list.First(), 0);
  const QelGeomID_t circle = list.Add(OfType(GeomType_Circle));
  const QelGeomID_t square = list.Add(OfType(GeomType_Square));
  EXPECT_EQ(list.First(), circle);
  EXPECT_EQ(list.After(circle), square);
  EXPECT_EQ(list.After(square), 0);
  EXPECT_EQ(list.At(2)->type, GeomType_Square);
  EXPECT_EQ(list.Count(), 2);
}

TEST(GeometryList, NeverReusesAnIdNotEvenInAnotherList) {
  GeometryList list;
  const QelGeomID_t first = list.Add(Geometry());
  ASSERT_TRUE(list.Delete(first));
  GeometryList other;
  EXPECT_GT(other.Add(Geometry()), first);
  EXPECT_EQ(other.Find(first), nullptr);
}

TEST(GeometryList, RefusesWhatIsNotThere) {
  GeometryList list;
  const QelGeomID_t id = list.Add(Geometry());
  for (const QelGeomID_t unknown : {QelGeomID_t{0}, QelGeomID_t{-1}, id + 1}) {
    EXPECT_EQ(list.Find(unknown), nullptr);
    EXPECT_EQ(list.After(unknown), 0);
    EXPECT_FALSE(list.Delete(unknown));
  }
  EXPECT_EQ(list.At(0), nullptr);
  EXPECT_EQ(list.At(2), nullptr);
  EXPECT_EQ(list.Count(), 1);
}

TEST(GeometryList, ClosesTheGapOfADeletedGeometry) {
  GeometryList list;
  const QelGeomID_t first = list.Add(Geometry());
  const QelGeomID_t second = list.Add(Geometry());
  const QelGeomID_t third = list.Add(Geometry());
  EXPECT_TRUE(list.Delete(second));
  EXPECT_EQ(list.After(first), third);
  EXPECT_EQ(list.At(2)->id, third);
}

}  // namespace
}  // namespace qelhost
