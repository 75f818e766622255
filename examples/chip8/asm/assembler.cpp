/* Two passes: the first finds every label's address (every statement's size is known
   without evaluating anything), the second evaluates operands and emits bytes. */
#include "assembler.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <stdexcept>

namespace chip8
{

namespace
{

constexpr int kOrigin = 0x200;
constexpr int kMaxProgram = 4096 - kOrigin;

struct Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Statement {
    int line;
    int address;
    std::string mnemonic; /* lower case */
    std::vector<std::string> operands;
};

struct Constant {
    int line;
    std::string expression;
};

std::string lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

std::string trim(const std::string &s)
{
    size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a])))
        a++;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1])))
        b--;
    return s.substr(a, b - a);
}

bool is_name_start(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_' || c == '.';
}
bool is_name_char(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.';
}

bool is_name(const std::string &s)
{
    if (s.empty() || !is_name_start(s[0])) return false;
    return std::all_of(s.begin(), s.end(), is_name_char);
}

int register_index(const std::string &operand)
{
    const std::string s = lower(operand);
    if (s.size() != 2 || s[0] != 'v' || !std::isxdigit(static_cast<unsigned char>(s[1]))) return -1;
    return std::isdigit(static_cast<unsigned char>(s[1])) ? s[1] - '0' : s[1] - 'a' + 10;
}

bool is_reserved(const std::string &name)
{
    static const char *const words[] = {"i", "[i]", "dt", "st", "k", "f", "hf", "b", "r"};
    const std::string s = lower(name);
    if (register_index(s) >= 0) return true;
    return std::any_of(std::begin(words), std::end(words), [&](const char *w) { return s == w; });
}

std::vector<std::string> split_operands(const std::string &text)
{
    std::vector<std::string> parts;
    if (trim(text).empty()) return parts;
    int depth = 0;
    std::string current;
    for (char c : text) {
        if (c == '(') depth++;
        if (c == ')') depth--;
        if (c == ',' && depth == 0) {
            parts.push_back(trim(current));
            current.clear();
        } else {
            current += c;
        }
    }
    parts.push_back(trim(current));
    for (const std::string &p : parts)
        if (p.empty()) throw Error("empty operand");
    return parts;
}

class Assembler
{
  public:
    explicit Assembler(std::string name) : name_(std::move(name)) {}

    AssemblyResult run(const std::string &source)
    {
        first_pass(source);
        if (size_ > kMaxProgram)
            report(last_line_, "program is " + std::to_string(size_) + " bytes, more than the " +
                                   std::to_string(kMaxProgram) + " bytes of program memory");
        second_pass(); /* even after first-pass errors, to report every line at once */
        std::stable_sort(errors_.begin(), errors_.end(),
                         [](const auto &a, const auto &b) { return a.first < b.first; });
        AssemblyResult result;
        for (const auto &e : errors_)
            result.errors.push_back(e.second);
        if (result.errors.empty()) result.bytes = std::move(bytes_);
        return result;
    }

  private:
    void report(int line, const std::string &message)
    {
        errors_.emplace_back(line, name_ + ":" + std::to_string(line) + ": error: " + message);
    }

    void define(int line, const std::string &name, bool is_label, const std::string &expression)
    {
        if (!is_name(name)) throw Error("'" + name + "' is not a valid name");
        if (is_reserved(name)) throw Error("'" + name + "' is a register or operand keyword, not a name");
        if (labels_.count(name) || constants_.count(name)) throw Error("'" + name + "' is already defined");
        if (is_label)
            labels_[name] = kOrigin + size_;
        else
            constants_[name] = Constant{line, expression};
    }

    void first_pass(const std::string &source)
    {
        int line = 0;
        size_t start = 0;
        while (start <= source.size()) {
            size_t end = source.find('\n', start);
            if (end == std::string::npos) end = source.size();
            line++;
            std::string text = source.substr(start, end - start);
            start = end + 1;
            const size_t comment = text.find(';');
            if (comment != std::string::npos) text.erase(comment);
            text = trim(text);
            if (text.empty()) continue;
            last_line_ = line;
            try {
                parse_line(line, text);
            } catch (const Error &e) {
                report(line, e.what());
            }
            if (end == source.size()) break;
        }
    }

    void parse_line(int line, std::string text)
    {
        /* Leading labels. */
        for (;;) {
            size_t k = 0;
            while (k < text.size() && is_name_char(text[k]))
                k++;
            if (k == 0 || k >= text.size() || text[k] != ':') break;
            define(line, text.substr(0, k), true, "");
            text = trim(text.substr(k + 1));
        }
        if (text.empty()) return;
        size_t k = 0;
        while (k < text.size() && !std::isspace(static_cast<unsigned char>(text[k])) && text[k] != '=')
            k++;
        const std::string head = text.substr(0, k);
        std::string rest = trim(text.substr(k));
        /* Constants: NAME = expr, NAME equ expr. */
        if (!rest.empty() && rest[0] == '=') {
            define(line, head, false, trim(rest.substr(1)));
            if (trim(rest.substr(1)).empty()) throw Error("constant '" + head + "' has no value");
            return;
        }
        if (lower(rest.substr(0, 4)) == "equ " || lower(rest) == "equ") {
            const std::string value = trim(rest.substr(3));
            if (value.empty()) throw Error("constant '" + head + "' has no value");
            define(line, head, false, value);
            return;
        }
        Statement s{line, kOrigin + size_, lower(head), split_operands(rest)};
        if (s.mnemonic == "db" || s.mnemonic == "dw") {
            if (s.operands.empty()) throw Error(s.mnemonic + " needs at least one value");
            size_ += static_cast<int>(s.operands.size()) * (s.mnemonic == "db" ? 1 : 2);
        } else {
            size_ += 2;
        }
        statements_.push_back(std::move(s));
    }

    /* ---- Expressions ---- */

    long evaluate(const std::string &text, int depth = 0)
    {
        if (depth > 32) throw Error("constants refer to each other in a circle");
        const std::string s = trim(text);
        size_t pos = 0;
        const long value = parse_sum(s, pos, depth);
        skip_space(s, pos);
        if (pos != s.size()) throw Error("unexpected '" + s.substr(pos) + "' in expression '" + s + "'");
        return value;
    }

    static void skip_space(const std::string &s, size_t &pos)
    {
        while (pos < s.size() && std::isspace(static_cast<unsigned char>(s[pos])))
            pos++;
    }

    long parse_sum(const std::string &s, size_t &pos, int depth)
    {
        long value = parse_product(s, pos, depth);
        for (;;) {
            skip_space(s, pos);
            if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) {
                const char op = s[pos++];
                const long rhs = parse_product(s, pos, depth);
                value = op == '+' ? value + rhs : value - rhs;
            } else {
                return value;
            }
        }
    }

    long parse_product(const std::string &s, size_t &pos, int depth)
    {
        long value = parse_unary(s, pos, depth);
        for (;;) {
            skip_space(s, pos);
            if (pos < s.size() && (s[pos] == '*' || s[pos] == '/')) {
                const char op = s[pos++];
                const long rhs = parse_unary(s, pos, depth);
                if (op == '/' && rhs == 0) throw Error("division by zero");
                value = op == '*' ? value * rhs : value / rhs;
                if (value > 0xFFFFFF || value < -0xFFFFFF) throw Error("value out of range");
            } else {
                return value;
            }
        }
    }

    long parse_unary(const std::string &s, size_t &pos, int depth)
    {
        /* Deeply nested input must not exhaust the stack. */
        struct Nesting {
            int &n;
            explicit Nesting(int &counter) : n(counter)
            {
                if (++n > 64) throw Error("expression nested too deeply");
            }
            ~Nesting() { n--; }
        } guard(nesting_);
        skip_space(s, pos);
        if (pos < s.size() && s[pos] == '-') return -parse_unary(s, ++pos, depth);
        if (pos < s.size() && s[pos] == '+') return parse_unary(s, ++pos, depth);
        return parse_atom(s, pos, depth);
    }

    long parse_atom(const std::string &s, size_t &pos, int depth)
    {
        skip_space(s, pos);
        if (pos >= s.size()) throw Error("missing value in expression '" + s + "'");
        if (s[pos] == '(') {
            const long value = parse_sum(s, ++pos, depth);
            skip_space(s, pos);
            if (pos >= s.size() || s[pos] != ')') throw Error("missing ')' in expression '" + s + "'");
            pos++;
            return value;
        }
        if (std::isdigit(static_cast<unsigned char>(s[pos])) || s[pos] == '$') {
            int base = 10;
            if (s[pos] == '$') {
                base = 16;
                pos++;
            } else if (s.compare(pos, 2, "0x") == 0 || s.compare(pos, 2, "0X") == 0) {
                base = 16;
                pos += 2;
            } else if (s.compare(pos, 2, "0b") == 0 || s.compare(pos, 2, "0B") == 0) {
                base = 2;
                pos += 2;
            }
            long value = 0;
            int digits = 0;
            for (; pos < s.size(); pos++) {
                const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(s[pos])));
                if (c == '_') continue;
                int d = -1;
                if (c >= '0' && c <= '9') d = c - '0';
                if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
                if (d < 0 && is_name_char(c)) throw Error("bad digit '" + std::string(1, s[pos]) + "' in number");
                if (d < 0) break;
                if (d >= base) throw Error("bad digit '" + std::string(1, s[pos]) + "' in number");
                value = value * base + d;
                if (value > 0xFFFFFF) throw Error("number too large");
                digits++;
            }
            if (digits == 0) throw Error("number without digits");
            return value;
        }
        if (is_name_start(s[pos])) {
            const size_t begin = pos;
            while (pos < s.size() && is_name_char(s[pos]))
                pos++;
            return lookup(s.substr(begin, pos - begin), depth);
        }
        throw Error("unexpected '" + std::string(1, s[pos]) + "' in expression '" + s + "'");
    }

    long lookup(const std::string &name, int depth)
    {
        auto label = labels_.find(name);
        if (label != labels_.end()) return label->second;
        auto constant = constants_.find(name);
        if (constant != constants_.end()) return evaluate(constant->second.expression, depth + 1);
        if (is_reserved(name)) throw Error("register or keyword '" + name + "' where a value is expected");
        throw Error("undefined name '" + name + "'");
    }

    /* ---- Encoding ---- */

    int value_in(const std::string &operand, long low, long high, const char *what)
    {
        const long v = evaluate(operand);
        if (v < low || v > high) throw Error(std::string(what) + " " + std::to_string(v) + " out of range");
        return static_cast<int>(v);
    }
    int byte(const std::string &operand) { return value_in(operand, -128, 255, "byte value") & 0xFF; }
    int address(const std::string &operand) { return value_in(operand, 0, 0xFFF, "address"); }
    int nibble(const std::string &operand) { return value_in(operand, 0, 15, "value"); }

    int reg(const std::string &operand)
    {
        const int r = register_index(operand);
        if (r < 0) throw Error("expected a register V0 to VF, found '" + operand + "'");
        return r;
    }

    static void expect(const Statement &s, size_t low, size_t high)
    {
        if (s.operands.size() < low || s.operands.size() > high)
            throw Error("'" + s.mnemonic + "' takes " +
                        (low == high ? std::to_string(low) : std::to_string(low) + " or " + std::to_string(high)) +
                        " operand" + (high == 1 ? "" : "s") + ", found " + std::to_string(s.operands.size()));
    }

    int encode(const Statement &s)
    {
        const std::string &m = s.mnemonic;
        const auto &o = s.operands;
        auto is = [&](size_t k, const char *word) { return k < o.size() && lower(o[k]) == word; };
        auto xy = [&](int base) {
            expect(s, 2, 2);
            return base | reg(o[0]) << 8 | reg(o[1]) << 4;
        };
        static const std::map<std::string, int> plain = {{"cls", 0x00E0}, {"ret", 0x00EE},  {"scr", 0x00FB},
                                                         {"scl", 0x00FC}, {"exit", 0x00FD}, {"low", 0x00FE},
                                                         {"high", 0x00FF}};
        auto p = plain.find(m);
        if (p != plain.end()) {
            expect(s, 0, 0);
            return p->second;
        }
        if (m == "scd") {
            expect(s, 1, 1);
            return 0x00C0 | nibble(o[0]);
        }
        if (m == "jp") {
            expect(s, 1, 2);
            if (o.size() == 1) return 0x1000 | address(o[0]);
            if (reg(o[0]) != 0) throw Error("'jp' with a register takes V0");
            return 0xB000 | address(o[1]);
        }
        if (m == "call") {
            expect(s, 1, 1);
            return 0x2000 | address(o[0]);
        }
        if (m == "se" || m == "sne") {
            expect(s, 2, 2);
            const int x = reg(o[0]);
            if (register_index(o[1]) >= 0) return (m == "se" ? 0x5000 : 0x9000) | x << 8 | register_index(o[1]) << 4;
            return (m == "se" ? 0x3000 : 0x4000) | x << 8 | byte(o[1]);
        }
        if (m == "ld") {
            expect(s, 2, 2);
            const int rx = register_index(o[0]), ry = register_index(o[1]);
            if (is(0, "i")) return 0xA000 | address(o[1]);
            if (rx >= 0) {
                if (ry >= 0) return 0x8000 | rx << 8 | ry << 4;
                if (is(1, "dt")) return 0xF007 | rx << 8;
                if (is(1, "k")) return 0xF00A | rx << 8;
                if (is(1, "[i]")) return 0xF065 | rx << 8;
                if (is(1, "r")) return 0xF085 | rx << 8;
                return 0x6000 | rx << 8 | byte(o[1]);
            }
            static const std::map<std::string, int> to = {{"dt", 0xF015}, {"st", 0xF018}, {"f", 0xF029},
                                                          {"hf", 0xF030}, {"b", 0xF033},  {"[i]", 0xF055},
                                                          {"r", 0xF075}};
            auto t = to.find(lower(o[0]));
            if (t == to.end()) throw Error("cannot load into '" + o[0] + "'");
            return t->second | reg(o[1]) << 8;
        }
        if (m == "add") {
            expect(s, 2, 2);
            if (is(0, "i")) return 0xF01E | reg(o[1]) << 8;
            const int x = reg(o[0]);
            if (register_index(o[1]) >= 0) return 0x8004 | x << 8 | register_index(o[1]) << 4;
            return 0x7000 | x << 8 | byte(o[1]);
        }
        static const std::map<std::string, int> logic = {
            {"or", 0x8001}, {"and", 0x8002}, {"xor", 0x8003}, {"sub", 0x8005}, {"subn", 0x8007}};
        auto l = logic.find(m);
        if (l != logic.end()) return xy(l->second);
        if (m == "shr" || m == "shl") {
            expect(s, 1, 2);
            const int x = reg(o[0]);
            const int y = o.size() == 2 ? reg(o[1]) : x;
            return (m == "shr" ? 0x8006 : 0x800E) | x << 8 | y << 4;
        }
        if (m == "rnd") {
            expect(s, 2, 2);
            return 0xC000 | reg(o[0]) << 8 | byte(o[1]);
        }
        if (m == "drw") {
            expect(s, 3, 3);
            return 0xD000 | reg(o[0]) << 8 | reg(o[1]) << 4 | nibble(o[2]);
        }
        if (m == "skp" || m == "sknp") {
            expect(s, 1, 1);
            return (m == "skp" ? 0xE09E : 0xE0A1) | reg(o[0]) << 8;
        }
        throw Error("unknown instruction '" + m + "'");
    }

    void second_pass()
    {
        /* Constants are checked even when nothing uses them. */
        for (const auto &c : constants_)
            try {
                evaluate(c.second.expression);
            } catch (const Error &e) {
                report(c.second.line, e.what());
            }
        for (const Statement &s : statements_) {
            try {
                if (s.mnemonic == "db") {
                    for (const std::string &o : s.operands)
                        bytes_.push_back(static_cast<uint8_t>(byte(o)));
                } else if (s.mnemonic == "dw") {
                    for (const std::string &o : s.operands) {
                        const int w = value_in(o, -32768, 65535, "word value") & 0xFFFF;
                        bytes_.push_back(static_cast<uint8_t>(w >> 8));
                        bytes_.push_back(static_cast<uint8_t>(w));
                    }
                } else {
                    const int op = encode(s);
                    bytes_.push_back(static_cast<uint8_t>(op >> 8));
                    bytes_.push_back(static_cast<uint8_t>(op));
                }
            } catch (const Error &e) {
                report(s.line, e.what());
                /* Keep later addresses where the first pass put them. */
                bytes_.resize(static_cast<size_t>(s.address - kOrigin));
                const size_t size = s.mnemonic == "db"   ? s.operands.size()
                                    : s.mnemonic == "dw" ? 2 * s.operands.size()
                                                         : 2;
                bytes_.resize(bytes_.size() + size);
            }
        }
    }

    std::string name_;
    std::vector<Statement> statements_;
    std::map<std::string, int> labels_;
    std::map<std::string, Constant> constants_;
    std::vector<std::pair<int, std::string>> errors_;
    std::vector<uint8_t> bytes_;
    int size_ = 0;
    int nesting_ = 0;
    int last_line_ = 1;
};

} // namespace

AssemblyResult assemble(const std::string &source, const std::string &name)
{
    return Assembler(name).run(source);
}

} // namespace chip8
