#version 330 core
// Bilinear sampling of the picture (the texture's filter is linear).
in vec2 vTexCoord;
uniform sampler2D picture;
out vec4 colour;

void main()
{
    colour = vec4(texture(picture, vTexCoord).rgb, 1.0);
}
