/* chip8-asm: assembles a CHIP-8 / SUPER-CHIP source file into a ROM.
   Usage: chip8-asm <source.c8s> -o <rom.ch8> */
#include "assembler.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

int main(int argc, char **argv)
{
    const char *input = nullptr, *output = nullptr;
    for (int k = 1; k < argc; k++) {
        if (std::strcmp(argv[k], "-o") == 0 && k + 1 < argc)
            output = argv[++k];
        else if (!input)
            input = argv[k];
        else
            input = nullptr, k = argc;
    }
    if (!input || !output) {
        std::fprintf(stderr, "usage: chip8-asm <source.c8s> -o <rom.ch8>\n");
        return 2;
    }
    std::ifstream in(input, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "chip8-asm: cannot read %s\n", input);
        return 1;
    }
    std::stringstream text;
    text << in.rdbuf();
    const chip8::AssemblyResult result = chip8::assemble(text.str(), input);
    for (const std::string &error : result.errors)
        std::fprintf(stderr, "%s\n", error.c_str());
    if (!result.ok()) return 1;
    std::ofstream out(output, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(result.bytes.data()), static_cast<std::streamsize>(result.bytes.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "chip8-asm: cannot write %s\n", output);
        return 1;
    }
    return 0;
}
