#version 330 core
// Nearest-neighbour sampling, whatever the texture's filter.
in vec2 vTexCoord;
uniform sampler2D picture;
out vec4 colour;

void main()
{
    ivec2 size = textureSize(picture, 0);
    ivec2 texel = clamp(ivec2(vTexCoord * vec2(size)), ivec2(0), size - 1);
    colour = vec4(texelFetch(picture, texel, 0).rgb, 1.0);
}
