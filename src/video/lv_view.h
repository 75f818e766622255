// The display view: a window with its own OpenGL 3.3 core context that draws the
// newest 32-bit picture stretched over its whole area, once per emulated frame.
#pragma once

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QWindow>
#include <cstdint>

#include "video/ks_view_math.h"

class QOpenGLShaderProgram;

class LVViewDelegate : public QWindow, protected QOpenGLExtraFunctions {
    Q_OBJECT
public:
    explicit LVViewDelegate(QWindow *parent = nullptr);
    ~LVViewDelegate() override;

    // Draws now when the view is exposed (the frame loop's request).
    void draw();

    // State shown to tests and to the window.
    bool wasBilinear() const { return m_wasBilinear; }
    uint32_t textureWidth() const { return m_texWidth; }
    uint32_t textureHeight() const { return m_texHeight; }
    int swapInterval() const { return m_swapInterval; }
    int textureCreations() const { return m_textureCreations; }
    int pipelineBuilds() const { return m_pipelineBuilds; }
    const KSCurvatureVertex *curvature() const { return m_curvature; }
    // Draws the newest picture and reads it back (RGBA, top row first), for tests.
    QImage grab();

    static uint32_t sMouseX, sMouseY;
    static uint8_t sMouseButton;

signals:
    void keyEvent(QKeyEvent *event);

protected:
    void exposeEvent(QExposeEvent *) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool setupRenderer();
    bool render(); // draws into the back buffer; false when the context is gone
    void setupPipeline();
    void setupTexture();
    void setupCurvature();
    void applySwapInterval(int interval);

    QOpenGLContext *m_context = nullptr;
    QOpenGLShaderProgram *m_program = nullptr;
    bool m_wasBilinear = false;
    GLuint m_texture = 0;
    uint32_t m_texWidth = 0, m_texHeight = 0;
    GLuint m_vao = 0, m_vertices = 0, m_curvatureBuffer = 0;
    KSQuadVertex m_quad[kQuadVertices] = {};
    KSCurvatureVertex m_curvature[kCurvatureVertices] = {};
    uint32_t m_winWidth = 0, m_winHeight = 0;
    uint32_t m_viewportSize[2] = {0, 0};
    int m_swapInterval = -1;
    int m_textureCreations = 0;
    int m_pipelineBuilds = 0;
};
