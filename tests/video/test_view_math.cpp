#include <gtest/gtest.h>

#include <cmath>

#include "video/ks_view_math.h"

TEST(ViewMath, ThePicturesFirstRowMapsToTheBottomEdge)
{
    KSQuadVertex q[kQuadVertices];
    KSBuildQuad(q, 640, 480);
    for (const auto &v : q) {
        EXPECT_EQ(std::fabs(v.position[0]), 320.0f);
        EXPECT_EQ(std::fabs(v.position[1]), 240.0f);
        EXPECT_EQ(v.texCoord[1], v.position[1] < 0 ? 0.0f : 1.0f); // row 0 (bottom) at the bottom
        EXPECT_EQ(v.texCoord[0], v.position[0] < 0 ? 0.0f : 1.0f);
    }
}

TEST(ViewMath, CurvatureMeshHas220VerticesInTenBands)
{
    KSCurvatureVertex m[kCurvatureVertices];
    KSBuildCurvature(m, 100, 50);
    EXPECT_FLOAT_EQ(m[0].position[0], -50);
    EXPECT_FLOAT_EQ(m[0].position[1], -25);
    EXPECT_FLOAT_EQ(m[219].position[0], 50);
    EXPECT_FLOAT_EQ(m[219].position[1], 25);
    EXPECT_FLOAT_EQ(m[219].distance, 1.0f);
    EXPECT_EQ(sizeof m, 7040u);
}

TEST(ViewMath, TopEdgeGivesMouseYZeroAndLeftOfContentKeepsThePosition)
{
    uint32_t x = 7, y = 7;
    EXPECT_TRUE(KSMapMouse(0, 480, 640, 480, 320, 240, &x, &y)); // top edge, origin bottom left
    EXPECT_EQ(y, 0u);
    EXPECT_EQ(x, 0u);
    EXPECT_TRUE(KSMapMouse(320, 240, 640, 480, 320, 240, &x, &y));
    EXPECT_EQ(x, 160u);
    EXPECT_EQ(y, 120u);
    x = y = 9;
    EXPECT_FALSE(KSMapMouse(-1, 100, 640, 480, 320, 240, &x, &y));
    EXPECT_EQ(x, 9u);
    EXPECT_FALSE(KSMapMouse(700, 100, 640, 480, 320, 240, &x, &y));
}
