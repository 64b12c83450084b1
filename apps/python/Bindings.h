#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/MessagePort.h"

// Pieces every part of the Python module shares: the bit arrays it hands out and takes in,
// and the message capture that turns what the core would show in a message box into Python
// exceptions and warnings.

namespace kv::python {

namespace py = pybind11;

using BitArray = py::array_t<uint8_t, py::array::c_style>;

// A fresh one-dimensional uint8 array of `count` elements, not cleared: every caller writes
// each element, straight into NumPy's own buffer.
BitArray NewBitArray(std::size_t count);

// The bytes of a one-dimensional array of bits, read where they lie: a uint8 or bool array
// (any other dtype, or more dimensions, is a TypeError). A non-contiguous array is copied once,
// so the view is kept alive by `keeper`.
std::span<const uint8_t> ViewBits(const py::handle& bits, py::object& keeper);

// The values of a bit array as 0 and 1 bytes; a value other than 0 and 1 is a ValueError.
std::vector<uint8_t> CopyBits(const py::handle& bits);

// Collects the core's messages for one call instead of letting them reach standard error.
class MessageCapture final : public IMessagePort {
public:
    MessageCapture();
    ~MessageCapture() override;
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    MessageAnswer Show(const MessageRequest& request) override;

    bool Empty() const { return m_texts.empty(); }
    // Every message of the call, one per line.
    std::string Text() const;
    // Raises the messages: an OSError when the core showed them as errors (a file that could
    // not be read or written), else a ValueError (content the core refused).
    [[noreturn]] void Raise() const;
    // Issues each message as a Python UserWarning: for calls that succeeded with a remark.
    void Warn() const;

private:
    std::vector<std::string> m_texts;
    bool m_error = false;
    IMessagePort* m_previous;
};

void BindSequences(py::module_& m);
void BindNumbers(py::module_& m);
void BindStimulus(py::module_& m);
void BindVia(py::module_& m);
void BindAxis(py::module_& m);
void BindEye(py::module_& m);
void BindWaveform(py::module_& m);

}  // namespace kv::python
