#include "apps/python/Bindings.h"

#include <algorithm>
#include <cstring>

#include "core/stimulus/BitFile.h"

namespace kv::python {

BitArray NewBitArray(std::size_t count) {
    return BitArray(static_cast<py::ssize_t>(count));
}

std::span<const uint8_t> ViewBits(const py::handle& bits, py::object& keeper) {
    if (!py::isinstance<py::array>(bits)) {
        throw py::type_error("bits must be a numpy array of uint8 or bool, not " +
                             std::string(py::str(py::type::of(bits).attr("__name__"))));
    }
    const auto array = py::reinterpret_borrow<py::array>(bits);
    const py::dtype type = array.dtype();
    // The kind and size together: a uint8 or a bool array, whatever its byte order.
    const char kind = type.kind();
    if (!((kind == 'u' || kind == 'b') && type.itemsize() == 1)) {
        throw py::type_error("bits must be a numpy array of uint8 or bool, not dtype " +
                             std::string(py::str(type.attr("name"))));
    }
    if (array.ndim() != 1) {
        throw py::value_error("bits must be a one-dimensional array, not " +
                              std::to_string(array.ndim()) + "-dimensional");
    }
    keeper = py::array::ensure(array, py::array::c_style);
    if (!keeper) {
        throw py::error_already_set();
    }
    const auto contiguous = py::reinterpret_borrow<py::array>(keeper);
    const std::span<const uint8_t> view(static_cast<const uint8_t*>(contiguous.data()),
                                        static_cast<std::size_t>(contiguous.size()));
    // A uint8 array may hold any byte: a 2 is no bit, and no caller is to guess what it means.
    const auto stray = std::find_if(view.begin(), view.end(), [](uint8_t bit) { return bit > 1; });
    if (stray != view.end()) {
        throw py::value_error("bits must be 0 or 1; element " +
                              std::to_string(stray - view.begin()) + " is " +
                              std::to_string(*stray));
    }
    return view;
}

std::vector<uint8_t> CopyBits(const py::handle& bits) {
    py::object keeper;
    const std::span<const uint8_t> view = ViewBits(bits, keeper);
    return {view.begin(), view.end()};
}

MessageCapture::MessageCapture() : m_previous(InstallMessagePort(this)) {}

MessageCapture::~MessageCapture() {
    InstallMessagePort(m_previous);
}

MessageAnswer MessageCapture::Show(const MessageRequest& request) {
    m_texts.push_back(request.text);
    // The file system's failures become OSError whatever icon their box carries
    // (the stimulus page shows a load failure with the exclamation icon).
    const std::string_view text = request.text;
    m_error = m_error || request.icon == MessageIcon::Error ||
              text.starts_with(kBitFileUnreadable) || text.starts_with(kBitFileUnwritable);
    // Nobody is there to ask: the box's default button, as a port without a window answers.
    return request.defaultAnswer;
}

std::string MessageCapture::Text() const {
    std::string text;
    for (const std::string& message : m_texts) {
        text += text.empty() ? "" : "\n";
        text += message;
    }
    return text;
}

void MessageCapture::Raise() const {
    PyErr_SetString(m_error ? PyExc_OSError : PyExc_ValueError, Text().c_str());
    throw py::error_already_set();
}

void MessageCapture::Warn() const {
    for (const std::string& message : m_texts) {
        if (PyErr_WarnEx(PyExc_UserWarning, message.c_str(), 2) != 0) {
            throw py::error_already_set();  // warnings turned into errors
        }
    }
}

}  // namespace kv::python
