// Geometry of the display view that needs no GPU: the quad, the curvature mesh
// and the mouse mapping into emulated pixels.
#pragma once

#include <cstdint>

struct KSQuadVertex {
    float position[2]; // pixels from the view's centre
    float texCoord[2];
};
static_assert(sizeof(KSQuadVertex) == 16, "quad vertex");

struct KSCurvatureVertex {
    float position[2];
    float texCoord[2];
    float distance; // from the centre over half the diagonal
    float padding[3];
};
static_assert(sizeof(KSCurvatureVertex) == 32, "curvature vertex");

constexpr int kQuadVertices = 6;
constexpr int kCurvatureVertices = 220;

// Two triangles covering a view of width x height; the picture's first row (the
// bottom of the emulated screen) maps to the bottom edge so it shows upright.
void KSBuildQuad(KSQuadVertex quad[kQuadVertices], float width, float height);
// Ten bands of 22 vertices; built and kept current, never drawn.
void KSBuildCurvature(KSCurvatureVertex mesh[kCurvatureVertices], float width, float height);

// Maps a window point (origin bottom left) in a content area of the given size to
// emulated pixels with y from the top. False (keep the previous position) when the
// point is left of or below the content or beyond the picture.
bool KSMapMouse(double x, double y, double contentWidth, double contentHeight, uint32_t backWidth,
                uint32_t backHeight, uint32_t *mouseX, uint32_t *mouseY);
