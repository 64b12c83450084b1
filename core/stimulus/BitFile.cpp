#include "core/stimulus/BitFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "core/ports/MessagePort.h"
#include "core/shared/FileIo.h"

namespace kv {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool IsSeparator(int c) {
    return c == ' ' || c == ',' || c == ';' || c == '\t' || c == '\r' || c == '\n';
}

std::string Fill(std::string_view format, std::string_view first, std::string_view second = {}) {
    std::string text(format);
    if (const std::size_t at = text.find("%s"); at != std::string::npos) {
        text.replace(at, 2, first);
        if (const std::size_t next = text.find("%s", at + first.size());
            next != std::string::npos) {
            text.replace(next, 2, second);
        }
    }
    return text;
}

void Report(std::string_view caption, std::string text, MessageIcon icon) {
    ShowMessage(text, icon, MessageButtons::Ok, caption.empty() ? kMessageCaption : caption);
}

}  // namespace

BitScan ScanBitFile(const std::string& path, std::size_t maxBits,
                    const std::function<bool(std::span<const uint8_t>)>& take) {
    errno = 0;
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        return {BitScanEnd::Unreadable, 0, errno != 0 ? errno : EIO};
    }
    std::vector<uint8_t> bits;
    std::size_t taken = 0;
    std::uint64_t offset = 0;
    char buffer[65536];
    // Chunk by chunk, stopping as soon as the outcome is known, so that even a huge file costs
    // no more than the part that decides.
    for (;;) {
        const std::size_t got = std::fread(buffer, 1, sizeof buffer, file.get());
        if (got == 0) {
            if (std::ferror(file.get())) {
                return {BitScanEnd::Unreadable, offset, errno != 0 ? errno : EIO};
            }
            return {BitScanEnd::Complete, offset, 0};
        }
        bits.clear();
        BitScan ended{BitScanEnd::Complete, 0, 0};
        std::size_t i = 0;
        for (; i < got; ++i) {
            const unsigned char c = static_cast<unsigned char>(buffer[i]);
            if (taken + bits.size() == maxBits) {
                ended.end = BitScanEnd::Truncated;  // any byte left counts, even a line end
                break;
            }
            if (IsSeparator(c)) {
                continue;
            }
            if (c != '0' && c != '1') {
                ended.end = BitScanEnd::NotSequence;
                break;
            }
            bits.push_back(c == '1' ? 1 : 0);
        }
        ended.offset = offset + i;
        offset += got;
        taken += bits.size();
        if (!bits.empty() && !take(bits)) {
            return {BitScanEnd::Stopped, ended.offset, 0};
        }
        if (i < got) {
            return ended;
        }
    }
}

std::optional<BitVector> ReadBitFile(const std::string& path, std::string_view caption) {
    BitVector bits;
    const BitScan scan = ScanBitFile(path, kMaxBitFileBits, [&bits](std::span<const uint8_t> more) {
        bits.insert(bits.end(), more.begin(), more.end());
        return true;
    });
    switch (scan.end) {
        case BitScanEnd::Unreadable:
            // Every load message carries the exclamation icon.
            Report(caption,
                   Fill(std::string(kBitFileUnreadable) + "%s due to following reason:\n%s", path,
                        std::strerror(scan.error)),
                   MessageIcon::Warning);
            return std::nullopt;
        case BitScanEnd::NotSequence:
            Report(caption,
                   Fill("Unable to load sequence\nFile %s is not valid sequence file", path),
                   MessageIcon::Warning);
            return std::nullopt;
        case BitScanEnd::Truncated:
            Report(caption,
                   "Sequence too long\nSequence length will be truncated to " +
                       std::to_string(kMaxBitFileBits),
                   MessageIcon::Warning);
            return bits;
        case BitScanEnd::Complete:
        case BitScanEnd::Stopped:
            break;
    }
    return bits;
}

std::string BitText(const BitVector& bits) {
    std::string text(bits.size(), '0');
    for (std::size_t i = 0; i < bits.size(); ++i) {
        text[i] = bits[i] != 0 ? '1' : '0';
    }
    return text;
}

bool WriteBitFile(const std::string& path, const BitVector& bits, std::string_view caption) {
    const FileResult result = ReplaceFileAtomically(path, BitText(bits));
    if (!result.ok) {
        Report(caption,
               Fill(std::string(kBitFileUnwritable) + "%s due to following reason:\n %s", path,
                    result.reason),
               MessageIcon::Error);
        return false;
    }
    return true;
}

}  // namespace kv
