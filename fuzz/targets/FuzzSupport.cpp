#include "FuzzSupport.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "core/ports/MessagePort.h"

namespace kv::fuzz {
namespace {

class SilentPort final : public IMessagePort {
public:
    MessageAnswer Show(const MessageRequest& request) override { return request.defaultAnswer; }
};

class Scratch {
public:
    Scratch() {
        const char* base = std::getenv("TMPDIR");
        std::string pattern =
            std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/kvfuzz-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            Fail("cannot create a scratch folder under " + pattern);
        }
        m_path = pattern;
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace

void Fail(std::string_view what) {
    std::fprintf(stderr, "\n==fuzz check failed== %.*s\n", static_cast<int>(what.size()),
                 what.data());
    std::fflush(stderr);
    std::abort();
}

void SilenceMessages() {
    static SilentPort port;
    InstallMessagePort(&port);
}

const std::filesystem::path& ScratchFolder() {
    static const Scratch scratch;
    return scratch.Path();
}

void WriteFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    Expect(static_cast<bool>(file), "cannot write the scratch file " + path.string());
}

std::string Escaped(std::string_view text) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == '\\') {
            out += "\\\\";
        } else if (byte >= 32 && byte < 127) {
            out += c;
        } else {
            out += "\\x";
            out += kHex[byte >> 4];
            out += kHex[byte & 15];
        }
    }
    return out;
}

}  // namespace kv::fuzz
