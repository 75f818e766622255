// The OpenGL display view.
#include "video/lv_view.h"

#include <QExposeEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLShaderProgram>
#include <cstdio>

#include "ks_shaders.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_alert.h"
#include "shell/ks_assert.h"
#include "shell/ks_main.h"
#include "video/ks_render.h"

uint32_t LVViewDelegate::sMouseX;
uint32_t LVViewDelegate::sMouseY;
uint8_t LVViewDelegate::sMouseButton;

LVViewDelegate::LVViewDelegate(QWindow *parent) : QWindow(parent)
{
    setSurfaceType(QSurface::OpenGLSurface);
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    setFormat(format);
}

LVViewDelegate::~LVViewDelegate()
{
    if (m_context && m_context->makeCurrent(this)) {
        delete m_program;
        if (m_texture) glDeleteTextures(1, &m_texture);
        if (m_vertices) glDeleteBuffers(1, &m_vertices);
        if (m_curvatureBuffer) glDeleteBuffers(1, &m_curvatureBuffer);
        if (m_vao) glDeleteVertexArrays(1, &m_vao);
        m_context->doneCurrent();
    } else
        delete m_program;
    delete m_context;
}

bool LVViewDelegate::setupRenderer()
{
    m_context = new QOpenGLContext(this);
    m_context->setFormat(format());
    if (!m_context->create() || !m_context->makeCurrent(this)) {
        delete m_context;
        m_context = nullptr;
        return false;
    }
    initializeOpenGLFunctions();
    m_texWidth = m_texHeight = 0;
    m_winWidth = m_winHeight = 0;
    glGenVertexArrays(1, &m_vao);
    glGenBuffers(1, &m_vertices);
    glGenBuffers(1, &m_curvatureBuffer);
    setupPipeline();
    KSBuildQuad(m_quad, width() * devicePixelRatio(), height() * devicePixelRatio());
    setupCurvature();
    return true;
}

void LVViewDelegate::setupPipeline()
{
    const bool bilinear = KSPrefBool(kPrefBilinearFiltering);
    auto *program = new QOpenGLShaderProgram;
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, k_vertexShader)) {
        KSHeadsUpAlert("Unable to load vertex shader function.", nullptr);
        KSExitProcess(1);
    }
    if (!program->addShaderFromSourceCode(QOpenGLShader::Fragment, bilinear ? k_linearShader : k_nearestShader)) {
        KSHeadsUpAlert("Unable to load fragment function.", nullptr);
        KSExitProcess(1);
    }
    program->setObjectName("Emulator Texturing Pipeline");
    program->bindAttributeLocation("position", 0);
    program->bindAttributeLocation("texCoord", 1);
    if (!program->link()) {
        fprintf(stderr, "Failed to created pipeline state, error %s\n", qPrintable(program->log()));
        KSExitProcess(1);
    }
    delete m_program;
    m_program = program;
    m_wasBilinear = bilinear;
    m_pipelineBuilds++;
    if (m_texture) {
        glBindTexture(GL_TEXTURE_2D, m_texture);
        const GLint filter = bilinear ? GL_LINEAR : GL_NEAREST;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    }
}

void LVViewDelegate::setupTexture()
{
    if (gOutputVideoWidth != m_texWidth || gOutputVideoHeight != m_texHeight) {
        m_texWidth = gOutputVideoWidth;
        m_texHeight = gOutputVideoHeight;
        if (m_texture) glDeleteTextures(1, &m_texture);
        glGenTextures(1, &m_texture);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        const GLint filter = m_wasBilinear ? GL_LINEAR : GL_NEAREST;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, m_texWidth, m_texHeight, 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
        m_textureCreations++;
    }
    const uint32_t *frame = KSDisplayFrame();
    if (frame && m_texWidth && m_texHeight) {
        glBindTexture(GL_TEXTURE_2D, m_texture);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, m_texWidth);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, m_texWidth, m_texHeight, GL_BGRA, GL_UNSIGNED_BYTE, frame);
    }
}

void LVViewDelegate::setupCurvature()
{
    KSBuildCurvature(m_curvature, (float)m_winWidth, (float)m_winHeight);
    glBindBuffer(GL_ARRAY_BUFFER, m_curvatureBuffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof m_curvature, m_curvature, GL_DYNAMIC_DRAW);
}

void LVViewDelegate::applySwapInterval(int interval)
{
    if (interval == m_swapInterval) return;
    m_swapInterval = interval;
    // Mesa's GLX and most drivers offer the MESA or SGI call on the current drawable.
    using SwapIntervalFunc = int (*)(int);
    auto f = reinterpret_cast<SwapIntervalFunc>(m_context->getProcAddress("glXSwapIntervalMESA"));
    if (!f) f = reinterpret_cast<SwapIntervalFunc>(m_context->getProcAddress("glXSwapIntervalSGI"));
    if (f) f(interval);
}

void LVViewDelegate::draw()
{
    if (!isExposed()) {
        KSDisplayFrame(); // keep the slot protocol moving while hidden
        return;
    }
    if (!render()) return;
    m_context->swapBuffers(this);
}

bool LVViewDelegate::render()
{
    if (!m_context) {
        if (!setupRenderer()) {
            KSHeadsUpAlert("Failed to create metal renderer.", nullptr);
            KSExitProcess(1);
        }
    } else if (!m_context->makeCurrent(this))
        return false;
    if (m_wasBilinear != KSPrefBool(kPrefBilinearFiltering)) setupPipeline();
    applySwapInterval(gSpeedUnlimited ? 0 : (KSPrefBool(kPrefVBLSync) ? 1 : 0));

    const uint32_t w = (uint32_t)(width() * devicePixelRatio());
    const uint32_t h = (uint32_t)(height() * devicePixelRatio());
    if (w != m_winWidth || h != m_winHeight) {
        m_winWidth = w;
        m_winHeight = h;
        KSBuildQuad(m_quad, (float)w, (float)h);
        glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
        glBufferData(GL_ARRAY_BUFFER, sizeof m_quad, m_quad, GL_DYNAMIC_DRAW);
        setupCurvature();
    }
    setupTexture();

    m_viewportSize[0] = w;
    m_viewportSize[1] = h;
    glViewport(0, 0, (GLsizei)w, (GLsizei)h);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    if (m_texture) {
        m_program->bind();
        glBindVertexArray(m_vao);
        glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
        glEnableVertexAttribArray(0);
        glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, sizeof(KSQuadVertex), nullptr);
        glEnableVertexAttribArray(1);
        glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, sizeof(KSQuadVertex),
                              reinterpret_cast<void *>(offsetof(KSQuadVertex, texCoord)));
        glUniform2ui(m_program->uniformLocation("viewportSize"), m_viewportSize[0], m_viewportSize[1]);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        m_program->setUniformValue("picture", 0);
        glDrawArrays(GL_TRIANGLES, 0, kQuadVertices);
        glBindVertexArray(0);
        m_program->release();
    }
    return true;
}

QImage LVViewDelegate::grab()
{
    // Draws the newest picture once more into the back buffer and reads it there.
    if (!isExposed() || !render()) return {};
    QImage image(m_winWidth, m_winHeight, QImage::Format_RGBA8888);
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, m_winWidth, m_winHeight, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    return image.mirrored(false, true);
}

void LVViewDelegate::exposeEvent(QExposeEvent *)
{
    if (isExposed() && KSSessionRunning()) draw();
}

void LVViewDelegate::keyPressEvent(QKeyEvent *event) { emit keyEvent(event); }
void LVViewDelegate::keyReleaseEvent(QKeyEvent *event) { emit keyEvent(event); }

void LVViewDelegate::mousePressEvent(QMouseEvent *) { sMouseButton = 1; }
void LVViewDelegate::mouseReleaseEvent(QMouseEvent *) { sMouseButton = 0; }

void LVViewDelegate::mouseMoveEvent(QMouseEvent *event)
{
    if (!gConfigParameters || gConfigParameters->uses_mouse != 1) return;
    const QPointF p = event->position();
    KSMapMouse(p.x(), height() - p.y(), width(), height(), gRequestedVideoWidth, gRequestedVideoHeight, &sMouseX,
               &sMouseY);
}

void LVViewDelegate::focusOutEvent(QFocusEvent *event) { QWindow::focusOutEvent(event); }
