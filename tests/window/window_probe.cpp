// Helper of the window test: writes the host's settings, and checks a screenshot
// of the screen for the test card at a given scale.
//   window_probe settings <ini> <size> <bilinear 0|1>
//   window_probe check <png> <scale, 0 to measure it> <linear 0|1>
//   window_probe lamp <png> <button index>   (exit 0 when the button's lamp is lit)
#include <QCoreApplication>
#include <QImage>
#include <QSettings>
#include <cstdio>
#include <cstdlib>

static bool Near(QRgb c, int r, int g, int b, int tolerance = 4)
{
    return std::abs(qRed(c) - r) <= tolerance && std::abs(qGreen(c) - g) <= tolerance &&
           std::abs(qBlue(c) - b) <= tolerance;
}

int main(int argc, char **argv)
{
    if (argc == 5 && QByteArray(argv[1]) == "settings") {
        QSettings s(QString::fromLocal8Bit(argv[2]), QSettings::IniFormat);
        s.setValue("KS::Video::BlitterType", "Plain");
        s.setValue("KS::Video::BlitterSize", atoi(argv[3]));
        s.setValue("KS::Video::BilinearFiltering", atoi(argv[4]) != 0);
        s.setValue("KS::Interface::PauseInBackground", false);
        s.sync();
        return s.status() == QSettings::NoError ? 0 : 1;
    }
    if (argc == 4 && QByteArray(argv[1]) == "lamp") {
        const QImage shot = QImage(QString::fromLocal8Bit(argv[2])).convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < shot.height(); y++)
            for (int x = 0; x < shot.width(); x++)
                if (Near(shot.pixel(x, y), 248, 248, 248, 2)) {
                    // The test card at 1x: lamp i is a 7 x 7 square at (4 + 9 i, 226).
                    const QRgb c = shot.pixel(x + 4 + 9 * atoi(argv[3]) + 3, y + 229);
                    const bool lit = Near(c, 0, 248, 0);
                    printf("lamp %s is %s\n", argv[3], lit ? "lit" : "dark");
                    return lit ? 0 : 1;
                }
        fprintf(stderr, "the test card is not on the screen\n");
        return 2;
    }
    if (argc != 5 || QByteArray(argv[1]) != "check") {
        fprintf(stderr, "usage: window_probe settings|check ...\n");
        return 2;
    }
    const QImage shot = QImage(QString::fromLocal8Bit(argv[2])).convertToFormat(QImage::Format_RGB32);
    const double wanted = atof(argv[3]);
    const bool linear = atoi(argv[4]) != 0;
    if (shot.isNull()) {
        fprintf(stderr, "no screenshot\n");
        return 1;
    }
    // The card's top-left corner: the first white pixel, scanning rows from the top.
    int x0 = -1, y0 = -1;
    for (int y = 0; y < shot.height() && x0 < 0; y++)
        for (int x = 0; x < shot.width(); x++)
            if (Near(shot.pixel(x, y), 248, 248, 248, 2)) {
                x0 = x, y0 = y;
                break;
            }
    if (x0 < 0) {
        fprintf(stderr, "the test card is not on the screen\n");
        return 1;
    }
    int run = 0;
    while (x0 + run < shot.width() && Near(shot.pixel(x0 + run, y0 + 2), 248, 248, 248, 8)) run++;
    int failures = 0;
    // A window resized to no whole multiple shows the card at the scale it measures.
    const double scale = wanted > 0 ? wanted : run / 40.0;
    if (std::abs(run - 40 * scale) > 1) {
        fprintf(stderr, "white bar is %d pixels wide, expected %g\n", run, 40 * scale);
        failures++;
    }
    static const int bars[8][3] = {{248, 248, 248}, {248, 248, 0}, {0, 248, 248}, {0, 248, 0},
                                   {248, 0, 248},   {248, 0, 0},   {0, 0, 248},   {0, 0, 0}};
    for (int i = 0; i < 8; i++) {
        const QRgb c = shot.pixel(x0 + int((i * 40 + 20) * scale), y0 + int(40 * scale));
        if (!Near(c, bars[i][0], bars[i][1], bars[i][2])) {
            fprintf(stderr, "bar %d is %02x%02x%02x\n", i, qRed(c), qGreen(c), qBlue(c));
            failures++;
        }
    }
    // The green ramp: step v of 32 at source column x is v * 8.
    const QRgb ramp = shot.pixel(x0 + int(165.5 * scale), y0 + int(97 * scale));
    if (!Near(ramp, 0, (165 * 32 / 320) * 8, 0)) {
        fprintf(stderr, "green ramp is %02x%02x%02x\n", qRed(ramp), qGreen(ramp), qBlue(ramp));
        failures++;
    }
    // The one-pixel checkerboard: pure black and white blocks with nearest
    // sampling; with linear sampling at a size that is no whole multiple of the
    // scaled picture, some pixels are blends.
    int blends = 0;
    for (int y = 0; y < int(10 * scale); y++)
        for (int x = 0; x < int(20 * scale); x++) {
            const QRgb c = shot.pixel(x0 + int(10 * scale) + x, y0 + int(130 * scale) + y);
            if (!Near(c, 0, 0, 0, 1) && !Near(c, 248, 248, 248, 1)) blends++;
        }
    if (!linear && blends) {
        fprintf(stderr, "nearest sampling shows %d blended pixels\n", blends);
        failures++;
    }
    if (linear && blends == 0) {
        fprintf(stderr, "linear sampling shows no blended pixels\n");
        failures++;
    }
    printf("card at %d,%d scale %.3f %s: %d failures\n", x0, y0, scale, linear ? "linear" : "nearest", failures);
    return failures ? 1 : 0;
}
