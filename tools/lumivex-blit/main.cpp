// lumivex-blit: runs one of the scalers on a PNG and writes the result as a PNG.
//
//   lumivex-blit IN.png OUT.png "Super Eagle" 2 [--frames N]
//   lumivex-blit --list
//   lumivex-blit --test-picture OUT.png
//
// The picture is reduced to RGB 5-5-5, laid out in buffers sized like the shell's
// frame slots (margins above and below the source, room for 5x output) and scaled
// by the blitter from the public table, exactly as the blitting thread calls it.
#include <QCoreApplication>
#include <QImage>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <lumivex/blitters.h>

#include "test_picture.h"

namespace
{

constexpr int kMaxSide = 1024;    // largest source accepted: the frame-slot buffers grow 50 bytes per pixel
constexpr int kDefaultFrames = 4; // enough still frames for "Interleaved" to draw both row parities

using Table = std::unique_ptr<BlitterRecord, void (*)(void *)>;

void Usage(FILE *out)
{
    fprintf(out,
            "usage: lumivex-blit IN.png OUT.png NAME SIZE [--frames N]\n"
            "       lumivex-blit --list\n"
            "       lumivex-blit --test-picture OUT.png\n"
            "Scales IN.png with the blitter NAME (for example \"Super Eagle\") at SIZE (1 to 5)\n"
            "and writes OUT.png. --list prints every name with its sizes. --frames runs the\n"
            "blitter on N identical frames (default %d) and writes the last.\n",
            kDefaultFrames);
}

int Fail(const std::string &message)
{
    fprintf(stderr, "lumivex-blit: %s\n", message.c_str());
    return 1;
}

// A whole decimal number, nothing else.
bool ParseInt(const char *text, long &value)
{
    if (!text || !*text) return false;
    errno = 0;
    char *end = nullptr;
    value = strtol(text, &end, 10);
    return errno == 0 && end && *end == '\0';
}

// Every distinct name in table order, with its sizes.
std::vector<std::pair<std::string, std::vector<int>>> Names(const BlitterRecord *table)
{
    std::vector<std::pair<std::string, std::vector<int>>> names;
    for (const BlitterRecord *r = table; r->size != 0; r++) {
        if (names.empty() || names.back().first != r->name) names.push_back({r->name, {}});
        names.back().second.push_back(r->size);
    }
    return names;
}

std::string SizesText(const std::vector<int> &sizes)
{
    std::string text;
    for (int s : sizes)
        text += (text.empty() ? "" : " ") + std::to_string(s);
    return text;
}

uint16_t To555(QRgb c)
{
    return (uint16_t)(((qRed(c) >> 3) << 10) | ((qGreen(c) >> 3) << 5) | (qBlue(c) >> 3));
}

QRgb From555(uint16_t p)
{
    const int r = (p >> 10) & 31, g = (p >> 5) & 31, b = p & 31;
    return qRgb((r << 3) | (r >> 2), (g << 3) | (g >> 2), (b << 3) | (b >> 2));
}

bool SavePicture(const std::vector<uint16_t> &pixels, int width, int height, const char *path)
{
    QImage out(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; y++) {
        QRgb *line = reinterpret_cast<QRgb *>(out.scanLine(y));
        for (int x = 0; x < width; x++)
            line[x] = From555(pixels[(size_t)y * width + x]);
    }
    return out.save(QString::fromLocal8Bit(path), "PNG");
}

int List(const BlitterRecord *table)
{
    for (const auto &entry : Names(table))
        printf("%s\t%s\n", entry.first.c_str(), SizesText(entry.second).c_str());
    return 0;
}

int WriteTestPicture(const char *path)
{
    if (!SavePicture(MakeTestPicture(), kTestPictureWidth, kTestPictureHeight, path))
        return Fail(std::string("cannot write ") + path);
    return 0;
}

int Scale(const BlitterRecord *table, const char *in, const char *out, const char *name, const char *sizeText,
          long frames)
{
    long size = 0;
    if (!ParseInt(sizeText, size) || size < 1 || size > 5)
        return Fail(std::string("bad size \"") + sizeText + "\": give a whole number from 1 to 5");
    const std::vector<std::pair<std::string, std::vector<int>>> names = Names(table);
    const std::vector<int> *sizes = nullptr;
    for (const auto &entry : names)
        if (entry.first == name) sizes = &entry.second;
    if (!sizes) return Fail(std::string("unknown blitter \"") + name + "\"; lumivex-blit --list shows the names");
    const BlitterRecord *record = nullptr;
    for (const BlitterRecord *r = table; r->size != 0; r++)
        if (r->size == size && strcmp(r->name, name) == 0) record = r;
    if (!record)
        return Fail(std::string("\"") + name + "\" has no size " + std::to_string(size) + "; its sizes are " +
                    SizesText(*sizes));

    QImage image;
    if (!image.load(QString::fromLocal8Bit(in))) return Fail(std::string("cannot read ") + in + " as an image");
    const int width = image.width(), height = image.height();
    if (width < 1 || height < 1) return Fail(std::string(in) + " is empty");
    if (width > kMaxSide || height > kMaxSide)
        return Fail(std::string(in) + " is " + std::to_string(width) + "x" + std::to_string(height) +
                    "; the largest picture accepted is " + std::to_string(kMaxSide) + "x" + std::to_string(kMaxSide));
    image = image.convertToFormat(QImage::Format_RGB32);

    // Frame-slot layout: the source 16 rows into a buffer 128 rows taller than the
    // picture, a delta buffer of 16 bytes and a destination of 50 bytes per slot pixel.
    const size_t slotPixels = (size_t)width * (size_t)(height + 128);
    std::vector<uint16_t> raw(slotPixels, 0), front(slotPixels * 25, 0);
    std::vector<uint8_t> delta(slotPixels * 16, 0);
    uint16_t *source = raw.data() + (size_t)16 * width;
    for (int y = 0; y < height; y++) {
        const QRgb *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < width; x++)
            source[(size_t)y * width + x] = To555(line[x]);
    }
    for (long f = 0; f < frames; f++)
        record->function(source, (uint32_t)width * 2, delta.data(), front.data(), (uint32_t)(width * size * 2), width,
                         height);

    const int outWidth = width * (int)size, outHeight = height * (int)size;
    front.resize((size_t)outWidth * outHeight);
    if (!SavePicture(front, outWidth, outHeight, out)) return Fail(std::string("cannot write ") + out);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    std::vector<const char *> args;
    long frames = kDefaultFrames;
    for (int i = 1; i < argc; i++) {
        if (strcmp(argv[i], "--help") == 0 || strcmp(argv[i], "-h") == 0) {
            Usage(stdout);
            return 0;
        }
        if (strcmp(argv[i], "--frames") == 0) {
            if (i + 1 >= argc || !ParseInt(argv[i + 1], frames) || frames < 1 || frames > 1000)
                return Fail("--frames needs a whole number from 1 to 1000");
            i++;
            continue;
        }
        args.push_back(argv[i]);
    }

    if (args.size() == 2 && strcmp(args[0], "--test-picture") == 0) return WriteTestPicture(args[1]);

    Table table(BuildBlitterTable(), free);
    if (!table) return Fail("out of memory building the blitter table");
    if (args.size() == 1 && strcmp(args[0], "--list") == 0) return List(table.get());
    if (args.size() != 4) {
        Usage(stderr);
        return 1;
    }
    return Scale(table.get(), args[0], args[1], args[2], args[3], frames);
}
