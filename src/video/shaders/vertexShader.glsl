#version 330 core
// Turns a position in pixels relative to the view's centre into clip space.
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 texCoord;
uniform uvec2 viewportSize;
out vec2 vTexCoord;

void main()
{
    gl_Position = vec4(position / (vec2(viewportSize) / 2.0), 0.0, 1.0);
    vTexCoord = texCoord;
}
