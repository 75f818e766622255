/* ROM files, state files and the open dialog's judgement of candidate files. */
#include "chip8.h"

#include <cstdio>
#include <cstring>
#include <zlib.h>

namespace chip8
{

namespace
{

/* State file layout: header, then the payload below, all integers little-endian. */
const uint8_t kStateMagic[4] = {'C', '8', 'F', 'Z'};
constexpr uint32_t kStateVersion = 1;
constexpr size_t kHeaderSize = 16;
constexpr size_t kDisplayBytes = kHighWidth * kHighHeight / 8; /* one bit per pixel */
constexpr size_t kPayloadSize =
    kMemorySize + 16 + kStackDepth * 2 + 16 + kDisplayBytes + 2 + 2 + 1 + 1 + 1 + 1 + 1 + 1 + 2 + 4 + 8 + 1;

class Writer
{
  public:
    explicit Writer(std::vector<uint8_t> &out) : out_(out) {}
    void u8(uint8_t v) { out_.push_back(v); }
    void le(uint64_t v, int bytes)
    {
        for (int b = 0; b < bytes; b++)
            out_.push_back(static_cast<uint8_t>(v >> (8 * b)));
    }
    void bytes(const uint8_t *p, size_t n) { out_.insert(out_.end(), p, p + n); }

  private:
    std::vector<uint8_t> &out_;
};

class Reader
{
  public:
    Reader(const uint8_t *p, size_t n) : p_(p), end_(p + n) {}
    uint64_t le(int bytes)
    {
        uint64_t v = 0;
        for (int b = 0; b < bytes; b++)
            v |= static_cast<uint64_t>(p_[b]) << (8 * b);
        p_ += bytes;
        return v;
    }
    uint8_t u8() { return *p_++; }
    void bytes(uint8_t *out, size_t n)
    {
        std::memcpy(out, p_, n);
        p_ += n;
    }
    bool at_end() const { return p_ == end_; }

  private:
    const uint8_t *p_;
    const uint8_t *end_;
};

uint32_t read_le32(const uint8_t *p)
{
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

} // namespace

uint32_t crc32_of(const uint8_t *data, size_t size)
{
    uLong crc = crc32(0L, Z_NULL, 0);
    while (size > 0) { /* zlib takes lengths as uInt */
        const uInt chunk = size > 0x40000000u ? 0x40000000u : static_cast<uInt>(size);
        crc = crc32(crc, data, chunk);
        data += chunk;
        size -= chunk;
    }
    return static_cast<uint32_t>(crc);
}

std::vector<uint8_t> Machine::save_state() const
{
    std::vector<uint8_t> payload;
    payload.reserve(kPayloadSize);
    Writer w(payload);
    w.bytes(s_.memory.data(), s_.memory.size());
    w.bytes(s_.v.data(), s_.v.size());
    for (uint16_t address : s_.stack)
        w.le(address, 2);
    w.bytes(s_.flags.data(), s_.flags.size());
    for (size_t byte = 0; byte < kDisplayBytes; byte++) {
        uint8_t packed = 0;
        for (int bit = 0; bit < 8; bit++)
            if (s_.display[byte * 8 + static_cast<size_t>(bit)]) packed |= static_cast<uint8_t>(0x80 >> bit);
        w.u8(packed);
    }
    w.le(s_.i, 2);
    w.le(s_.pc, 2);
    w.u8(s_.sp);
    w.u8(s_.delay);
    w.u8(s_.sound);
    w.u8(s_.hires ? 1 : 0);
    w.u8(static_cast<uint8_t>(s_.fault));
    w.u8(s_.wait_key);
    w.le(s_.keys, 2);
    w.le(s_.rng, 4);
    w.le(s_.frame, 8);
    w.u8(static_cast<uint8_t>(s_.model));

    std::vector<uint8_t> file;
    Writer h(file);
    h.bytes(kStateMagic, 4);
    h.le(kStateVersion, 4);
    h.le(payload.size(), 4);
    h.le(crc32_of(payload.data(), payload.size()), 4);
    file.insert(file.end(), payload.begin(), payload.end());
    return file;
}

bool Machine::load_state(const uint8_t *data, size_t size)
{
    if (!data || size != kHeaderSize + kPayloadSize) return false;
    if (std::memcmp(data, kStateMagic, 4) != 0) return false;
    if (read_le32(data + 4) != kStateVersion || read_le32(data + 8) != kPayloadSize) return false;
    const uint8_t *payload = data + kHeaderSize;
    if (read_le32(data + 12) != crc32_of(payload, kPayloadSize)) return false;

    State s;
    Reader r(payload, kPayloadSize);
    r.bytes(s.memory.data(), s.memory.size());
    r.bytes(s.v.data(), s.v.size());
    for (uint16_t &address : s.stack)
        address = static_cast<uint16_t>(r.le(2));
    r.bytes(s.flags.data(), s.flags.size());
    for (size_t byte = 0; byte < kDisplayBytes; byte++) {
        const uint8_t packed = r.u8();
        for (int bit = 0; bit < 8; bit++)
            s.display[byte * 8 + static_cast<size_t>(bit)] = (packed >> (7 - bit)) & 1;
    }
    s.i = static_cast<uint16_t>(r.le(2));
    s.pc = static_cast<uint16_t>(r.le(2));
    s.sp = r.u8();
    s.delay = r.u8();
    s.sound = r.u8();
    const uint8_t hires = r.u8(), fault = r.u8();
    s.wait_key = r.u8();
    s.keys = static_cast<uint16_t>(r.le(2));
    s.rng = static_cast<uint32_t>(r.le(4));
    s.frame = r.le(8);
    const uint8_t model = r.u8();
    if (!r.at_end()) return false;

    /* A correct checksum over nonsense is still nonsense: check every field's range. */
    if (hires > 1 || fault > static_cast<uint8_t>(Fault::Exit) || model > static_cast<uint8_t>(Model::SuperChip))
        return false;
    if (s.sp > kStackDepth || s.pc >= kMemorySize || s.i >= kMemorySize || s.rng == 0) return false;
    if (s.wait_key != kNoKey && s.wait_key > 15) return false;
    for (uint16_t address : s.stack)
        if (address >= kMemorySize) return false;
    s.hires = hires != 0;
    s.fault = static_cast<Fault>(fault);
    s.model = static_cast<Model>(model);
    if (s.hires && s.model != Model::SuperChip) return false;

    s_ = s;
    model_ = s.model;
    return true;
}

bool Machine::freeze(const char *path) const
{
    if (!path || !*path) return false;
    const std::vector<uint8_t> file = save_state();
    /* Write beside the target and rename, so that a failed write never leaves half a state. */
    const std::string temporary = std::string(path) + ".part";
    FILE *f = std::fopen(temporary.c_str(), "wb");
    if (!f) return false;
    const bool written = std::fwrite(file.data(), 1, file.size(), f) == file.size();
    const bool closed = std::fclose(f) == 0;
    if (!written || !closed || std::rename(temporary.c_str(), path) != 0) {
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

bool Machine::defrost(const char *path)
{
    if (!path) return false;
    FILE *f = std::fopen(path, "rb");
    if (!f) return false;
    /* One byte more than a state file holds tells an over-long file apart. */
    std::vector<uint8_t> file(kHeaderSize + kPayloadSize + 1);
    const size_t size = std::fread(file.data(), 1, file.size(), f);
    std::fclose(f);
    return load_state(file.data(), size);
}

RomError read_rom_file(const char *path, std::vector<uint8_t> &out)
{
    if (!path) return RomError::CannotOpen;
    gzFile file = gzopen(path, "rb"); /* reads plain files unchanged */
    if (!file) return RomError::CannotOpen;
    std::vector<uint8_t> data(static_cast<size_t>(kMaxRomSize) + 1);
    size_t total = 0;
    bool corrupt = false;
    while (total < data.size()) {
        const int got = gzread(file, data.data() + total, static_cast<unsigned>(data.size() - total));
        if (got < 0) corrupt = true;
        if (got <= 0) break;
        total += static_cast<size_t>(got);
    }
    int status = Z_OK;
    gzerror(file, &status); /* a stream cut short ends quietly, with Z_BUF_ERROR left behind */
    if (status != Z_OK && status != Z_STREAM_END) corrupt = true;
    gzclose(file);
    if (corrupt) return RomError::Corrupt;
    if (total == 0) return RomError::Empty;
    if (total > static_cast<size_t>(kMaxRomSize)) return RomError::TooLarge;
    data.resize(total);
    out.swap(data);
    return RomError::None;
}

const char *describe(RomError error)
{
    switch (error) {
    case RomError::None:
        return "The ROM was loaded.";
    case RomError::CannotOpen:
        return "The file could not be opened.";
    case RomError::Empty:
        return "The file is empty.";
    case RomError::TooLarge:
        return "The file is larger than the 3584 bytes of program memory.";
    case RomError::Corrupt:
        return "The compressed file is damaged.";
    }
    return "Unknown error.";
}

bool looks_like_rom(const uint8_t header[128], int64_t file_size)
{
    if (!header) return false;
    /* A gzip file is smaller than what it holds, so the size on disk is an upper bound too. */
    if (file_size >= 0 && (file_size < 2 || file_size > kMaxRomSize)) return false;
    const uint16_t first = static_cast<uint16_t>((header[0] << 8) | header[1]);
    if (!is_valid_opcode(first, Model::SuperChip)) return false;
    /* Most text decodes as instructions; a program's start is rarely all printable text. */
    const size_t length = file_size >= 0 && file_size < 128 ? static_cast<size_t>(file_size) : 128;
    for (size_t k = 0; k < length; k++) {
        const uint8_t c = header[k];
        if (!((c >= 0x20 && c < 0x7F) || c == '\n' || c == '\r' || c == '\t')) return true;
    }
    return false;
}

} // namespace chip8
