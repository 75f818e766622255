#include "video/ks_view_math.h"

#include <cmath>

void KSBuildQuad(KSQuadVertex q[kQuadVertices], float width, float height)
{
    const float w = width / 2, h = height / 2;
    const KSQuadVertex v[kQuadVertices] = {
        {{w, -h}, {1, 0}}, {{-w, -h}, {0, 0}}, {{-w, h}, {0, 1}},
        {{w, -h}, {1, 0}}, {{-w, h}, {0, 1}},  {{w, h}, {1, 1}},
    };
    for (int i = 0; i < kQuadVertices; i++) q[i] = v[i];
}

void KSBuildCurvature(KSCurvatureVertex mesh[kCurvatureVertices], float width, float height)
{
    const float halfDiagonal = std::sqrt(width * width + height * height) / 2;
    int n = 0;
    for (int band = 0; band < 10; band++) {
        for (int column = 0; column <= 10; column++) {
            for (int edge = 0; edge < 2; edge++) {
                const int row = band + edge;
                KSCurvatureVertex &v = mesh[n++];
                v.position[0] = column * width / 10 - width / 2;
                v.position[1] = row * height / 10 - height / 2;
                v.texCoord[0] = column * 0.1f;
                v.texCoord[1] = row * 0.1f;
                const float d = std::sqrt(v.position[0] * v.position[0] + v.position[1] * v.position[1]);
                v.distance = halfDiagonal > 0 ? d / halfDiagonal : 0;
                v.padding[0] = v.padding[1] = v.padding[2] = 0;
            }
        }
    }
}

bool KSMapMouse(double x, double y, double contentWidth, double contentHeight, uint32_t backWidth,
                uint32_t backHeight, uint32_t *mouseX, uint32_t *mouseY)
{
    if (x < 0 || y < 0 || contentWidth <= 0 || contentHeight <= 0) return false;
    const double ex = x * (backWidth / contentWidth);
    const double ey = y * (backHeight / contentHeight);
    if (ex > backWidth || ey > backHeight) return false;
    *mouseX = (uint32_t)ex;
    *mouseY = (uint32_t)(backHeight - ey);
    return true;
}
