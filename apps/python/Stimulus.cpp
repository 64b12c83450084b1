#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <filesystem>
#include <optional>
#include <string>

#include "apps/python/Bindings.h"
#include "core/settings/IniFileCheck.h"
#include "core/shared/NumberText.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/StimulusRules.h"

// The stimulus data object and its eye mask. Every value is a property under a Python name;
// its docstring gives the key under which load and save store it.

namespace kv::python {
namespace {

using Stimulus = py::class_<CStimulusData>;
using Mask = py::class_<EYEMASK>;

// What a value is, where it is stored and, from its rule, the range a page takes.
std::string Stored(const char* what, const char* key) {
    std::string text(what);
    if (const StimulusRule* rule = FindStimulusRule(key); rule != nullptr && rule->typed) {
        text += ", " + FormatReal(rule->typed->low) + " to " + FormatReal(rule->typed->high);
    }
    return text + " (stored as " + key + ")";
}

template <auto Member>
void Value(Stimulus& c, const char* name, const char* what, const char* key) {
    c.def_readwrite(name, Member, Stored(what, key).c_str());
}

// One element of a three-component array: 0 Gaussian, 1 uniform, 2 sine.
template <auto Array, std::size_t Index>
void Element(Stimulus& c, const char* name, const char* what, const char* key) {
    c.def_property(
        name, [](const CStimulusData& d) { return (d.*Array)[Index]; },
        [](CStimulusData& d, bool value) { (d.*Array)[Index] = value; }, Stored(what, key).c_str());
}

void MaskValue(Mask& c, const char* name, const char* what, const char* key) {
    double EYEMASK::*member = StimulusRuleOf(key).maskMember;
    c.def_property(
        name, [member](const EYEMASK& mask) { return mask.*member; },
        [member](EYEMASK& mask, double value) { mask.*member = value; }, Stored(what, key).c_str());
}

void SetName(EYEMASK& mask, const std::string& name) {
    if (name.size() > sizeof(mask.MaskName) - 1 || name.find('\0') != std::string::npos) {
        throw py::value_error("a mask name holds at most 20 bytes and no NUL");
    }
    SetMaskName(mask, name);
}

std::optional<std::string> OrderError(const EYEMASK& mask) {
    if (const auto error = FindMaskOrderError(mask)) {
        return std::string(*error);
    }
    return std::nullopt;
}

std::optional<std::string> PlacementError(const EYEMASK& mask) {
    if (const auto error = FindMaskPlacementError(mask)) {
        return std::string(*error);
    }
    return std::nullopt;
}

bool SameMask(const EYEMASK& a, const EYEMASK& b) {
    return SameMaskNumbers(a, b) && MaskName(a) == MaskName(b);
}

void BindMask(py::module_& m) {
    Mask mask(m, "EyeMask",
              "An eye mask: levels in volts, time points in the units of the eye's time axis,\n"
              "its placement (scale and offset) and its library name. A new mask holds the\n"
              "defaults.");
    mask.def(py::init(&DefaultEyeMask));
    MaskValue(mask, "top_max", "Upper limit of the top level", "PTOPMAX");
    MaskValue(mask, "top_min", "Lower limit of the top level", "PTOPMIN");
    MaskValue(mask, "base_min", "Lower limit of the base level", "PBASEMIN");
    MaskValue(mask, "base_max", "Upper limit of the base level", "PBASEMAX");
    MaskValue(mask, "cross", "Crossing level", "PCROSS");
    MaskValue(mask, "cross1_min", "Earliest first crossing", "TCROSS1MIN");
    MaskValue(mask, "cross1_max", "Latest first crossing", "TCROSS1MAX");
    MaskValue(mask, "rise_delay", "Rise delay", "TRISEDELAY");
    MaskValue(mask, "cross2_max", "Latest second crossing", "TCROSS2MAX");
    MaskValue(mask, "cross2_min", "Earliest second crossing", "TCROSS2MIN");
    MaskValue(mask, "fall_delay", "Fall delay", "TFALLDELAY");
    MaskValue(mask, "scale_time", "Time scale", "SCALETIME");
    MaskValue(mask, "scale_volt", "Voltage scale", "SCALEVOLT");
    MaskValue(mask, "offset_time", "Time offset", "OFFSETTIME");
    MaskValue(mask, "offset_volt", "Voltage offset", "OFFSETVOLT");
    mask.def_property(
        "name", [](const EYEMASK& e) { return std::string(MaskName(e)); }, &SetName,
        "Library name, at most 20 bytes; a longer one raises ValueError (stored as MASKNAME)");
    mask.def("order_error", &OrderError,
             "None when the levels and time points are in order, else the message of the first\n"
             "value out of order.");
    mask.def("placement_error", &PlacementError,
             "None when the scale and offsets may be shown as they are, else the message for\n"
             "the first one out of its range (scales, time offset, voltage offset).");
    mask.def(
        "__eq__", [](const EYEMASK& a, const EYEMASK& b) { return SameMask(a, b); },
        py::is_operator());
    mask.def("__copy__", [](const EYEMASK& e) { return e; });
    mask.def(
        "__deepcopy__", [](const EYEMASK& e, const py::dict&) { return e; }, py::arg("memo"));
    mask.def("__repr__",
             [](const EYEMASK& e) { return "<EyeMask '" + std::string(MaskName(e)) + "'>"; });
}

// The location both load and save take: an INI file, a named key of the settings store, or
// (neither) the module's own store.
struct Location {
    std::optional<std::string> text;
    bool file = false;
};

Location ChooseLocation(const std::optional<std::filesystem::path>& path,
                        const std::optional<std::string>& storeKey) {
    if (path && storeKey) {
        throw py::value_error("give a path or a store_key, not both");
    }
    if (path) {
        return {path->string(), true};
    }
    if (storeKey && (storeKey->empty() || storeKey->find('\0') != std::string::npos)) {
        throw py::value_error("a store_key must be a non-empty text without NUL");
    }
    return {storeKey, false};
}

[[noreturn]] void RaiseInvalid(const std::string& reason) {
    py::object error = py::reinterpret_steal<py::object>(
        PyObject_CallFunction(PyExc_ValueError, "s", std::string(kInvalidEyeDiagramData).c_str()));
    if (!error) {
        throw py::error_already_set();
    }
    // The exception's text is the user-facing message; the rule that failed rides along.
    if (py::hasattr(error, "add_note")) {
        error.attr("add_note")(reason);
    }
    PyErr_SetObject(PyExc_ValueError, error.ptr());
    throw py::error_already_set();
}

PyObject* ExceptionFor(IniFileProblemKind kind) {
    switch (kind) {
        case IniFileProblemKind::Missing:
            return PyExc_FileNotFoundError;
        case IniFileProblemKind::Folder:
            return PyExc_IsADirectoryError;
        case IniFileProblemKind::Unreadable:
            return PyExc_OSError;
        case IniFileProblemKind::Empty:
        case IniFileProblemKind::NotIni:
            break;
    }
    return PyExc_ValueError;
}

void Load(CStimulusData& data, const std::optional<std::filesystem::path>& path,
          const std::optional<std::string>& storeKey) {
    const Location location = ChooseLocation(path, storeKey);
    // A file is refused as the command line refuses it, with the same reason, and the object
    // stays as it was.
    if (path) {
        if (const auto problem = FindIniFileProblem(path->string(), true)) {
            PyErr_SetString(ExceptionFor(problem->kind), problem->reason.c_str());
            throw py::error_already_set();
        }
    }
    MessageCapture messages;  // the reset's message becomes the exception below
    const StimulusReadResult read =
        LoadStimulusData(data, location.text ? location.text->c_str() : nullptr, location.file);
    if (read.invalidReason) {
        RaiseInvalid(*read.invalidReason);
    }
    if (read.unreadSequenceLength) {
        const std::string warning =
            "the stored SEQUENCELENGTH=" + std::to_string(*read.unreadSequenceLength) +
            " lies outside 1 - 32000, so the stored bits were not read";
        if (PyErr_WarnEx(PyExc_UserWarning, warning.c_str(), 1) != 0) {
            throw py::error_already_set();
        }
    }
}

void Save(const CStimulusData& data, const std::optional<std::filesystem::path>& path,
          const std::optional<std::string>& storeKey) {
    const Location location = ChooseLocation(path, storeKey);
    if (StoresItsBits(data.m_seqType) && data.GetBitCount() > kMaxStoredCustomBits) {
        const std::string warning = "the sequence has " + std::to_string(data.GetBitCount()) +
                                    " bits; only its first " +
                                    std::to_string(kMaxStoredCustomBits) + " are saved";
        if (PyErr_WarnEx(PyExc_UserWarning, warning.c_str(), 1) != 0) {
            throw py::error_already_set();
        }
    }
    MessageCapture messages;
    const FileResult saved =
        SaveStimulusData(data, location.text ? location.text->c_str() : nullptr, location.file);
    if (!saved.ok) {
        PyErr_SetString(PyExc_OSError, saved.reason.c_str());
        throw py::error_already_set();
    }
}

void Generate(CStimulusData& data) {
    // Ten bits a cycle: beyond the command line's limit the array would not fit memory.
    if (data.m_seqType == seq::k8b10b &&
        (data.m_cycleCount < 1 || data.m_cycleCount > 100'000'000)) {
        throw py::value_error("an 8B/10B sequence needs a cycle_count from 1 to 100000000");
    }
    // The generator leaves the bits alone for a degree it cannot make; saying so beats an
    // old sequence that looks new.
    const bool prbs = data.m_seqType == seq::kPrbs || data.m_seqType == seq::kConstructionDefault;
    if (prbs && (data.m_polyDegree < 1 || data.m_polyDegree > 30)) {
        throw py::value_error("a PRBS sequence needs a poly_degree from 1 to 30");
    }
    data.GenerateSequence(data.m_initState, data.m_bits);
    if (auto pattern = FixedPattern(data.m_seqType, data.m_initState)) {
        data.m_bits = std::move(*pattern);
    }
}

BitArray BitsOf(const CStimulusData& data) {
    BitArray array = NewBitArray(data.m_bits.size());
    std::copy(data.m_bits.begin(), data.m_bits.end(), array.mutable_data());
    return array;
}

void BindValues(Stimulus& c) {
    using V = StimulusValues;
    Value<&V::m_cycleCount>(c, "cycle_count", "Simulation cycles", "CYCLECOUNT");
    Value<&V::m_skipBits>(c, "skip_bits", "Bits skipped before the eye", "SKIPBITS");
    Value<&V::m_eyeCount>(c, "eye_count", "Eyes shown", "EYECOUNT");
    Value<&V::m_period>(c, "period", "Bit period in ns", "PERIOD");
    Value<&V::m_dutyCycle>(c, "duty_cycle", "Duty cycle in percent", "DUTYCYCLE");
    Value<&V::m_maxJitter>(c, "max_jitter", "Maximum jitter", "MAXJITTER");
    Value<&V::m_randomFreq>(c, "random_freq", "Random jitter frequency", "RANDOMFREQ");
    Value<&V::m_sineMag>(c, "sine_mag", "Sine jitter magnitude", "SINEMAG");
    Value<&V::m_sineFreq>(c, "sine_freq", "Sine jitter frequency", "SINEFREQ");
    Value<&V::m_sineInit>(c, "sine_init", "Sine jitter initial phase", "SINEINIT");
    Value<&V::m_uniformMag>(c, "uniform_mag", "Uniform jitter magnitude", "UNIFORMMAG");
    Value<&V::m_uniformMean>(c, "uniform_mean", "Uniform jitter mean", "UNIFORMMEAN");
    Element<&V::m_addJitter, 0>(c, "add_gaussian", "Add Gaussian jitter", "ADDGAUSSIAN");
    Element<&V::m_addJitter, 1>(c, "add_uniform", "Add uniform jitter", "ADDUNIFORM");
    Element<&V::m_addJitter, 2>(c, "add_sine", "Add sine jitter", "ADDSINE");
    Value<&V::m_advancedJitter>(c, "advanced_jitter", "Advanced jitter settings", "ADVJITTER");
    Element<&V::m_freqMeasured, 0>(c, "gaussian_freq_measured",
                                   "Gaussian jitter frequency is measured", "GAUSSIANFREQMEAS");
    Element<&V::m_freqMeasured, 1>(c, "uniform_freq_measured",
                                   "Uniform jitter frequency is measured", "UNIFORMFREQMEAS");
    Element<&V::m_freqMeasured, 2>(c, "sine_freq_measured", "Sine jitter frequency is measured",
                                   "SINEFREQMEAS");
    Value<&V::m_jitterType>(c, "jitter_type", "Jitter type", "JITTERTYPE");
    Value<&V::m_jitterRepeatable>(c, "jitter_repeatable", "Jitter repeats from run to run",
                                  "JITTERREPEATABLE");
    Element<&V::m_jitterAsTime, 0>(c, "gaussian_jitter_as_time", "Gaussian jitter given as a time",
                                   "GAUSSIANJITASTIME");
    Element<&V::m_jitterAsTime, 1>(c, "uniform_jitter_as_time", "Uniform jitter given as a time",
                                   "UNIFORMJITASTIME");
    Element<&V::m_jitterAsTime, 2>(c, "sine_jitter_as_time", "Sine jitter given as a time",
                                   "SINEJITASTIME");
    Value<&V::m_seqType>(c, "seq_type",
                         "Sequence kind: 0 PRBS, 1 8B/10B, 2 toggling, 3 USB 2.0 compliance, "
                         "4 custom, 7 PRBS (construction default), 8 edge, 9 pulse",
                         "SEQTYPE");
    Value<&V::m_initState>(c, "init_state", "First bit", "INITSTATE");
    Value<&V::m_polyDegree>(c, "poly_degree", "PRBS polynomial degree", "POLYDEGREE");
    c.def_readwrite("aux_flag", &V::m_auxFlag, "Auxiliary flag (not stored)");
    c.def_readwrite("list_mode", &V::m_listMode,
                    "Which sequence list the pages show: 0 the eye-diagram list (not stored)");
    c.def_readwrite("cycle_marks", &V::m_cycleMarks, "Marked cycles (not stored)");
    c.def_readwrite("description", &CStimulusData::m_description,
                    "A note of this object alone (not stored, not copied by assignment)");
}

}  // namespace

void BindStimulus(py::module_& m) {
    BindMask(m);
    Stimulus c(m, "StimulusData",
               "The stimulus and eye-diagram set-up of one simulation. Setting a property\n"
               "stores the value as given; load checks the data as a whole.");
    c.def(py::init<>());
    BindValues(c);
    c.def_property(
        "bits", &BitsOf,
        [](CStimulusData& d, const py::handle& bits) { d.SetBitVector(CopyBits(bits)); },
        "The bit sequence as a numpy.uint8 array (a copy); set it from a uint8 or bool array\n"
        "of 0 and 1 (stored as SEQUENCELENGTH and BITSEQUENCE, for custom sequences only;\n"
        "the other kinds are made again on load)");
    c.def_property(
        "mask", [](CStimulusData& d) -> EYEMASK& { return d.m_mask; },
        [](CStimulusData& d, const EYEMASK& mask) { d.m_mask = mask; },
        py::return_value_policy::reference_internal,
        "The eye mask, an EyeMask that changes this object's mask in place (stored as\n"
        "MASKNAME and PTOPMAX to OFFSETVOLT)");
    c.def(
        "invalid_reason",
        [](const CStimulusData& d) -> std::optional<std::string> {
            if (const auto reason = d.InvalidReason(d.GetBitCount())) {
                return std::string(*reason);
            }
            return std::nullopt;
        },
        "None when the data would pass load's check, else the first rule it breaks.");
    c.def("generate", &Generate,
          "Makes the bits again from the sequence kind, degree, cycle count and initial state;\n"
          "custom bits stay as they are.");
    c.def("load", &Load, py::arg("path") = py::none(), py::kw_only(),
          py::arg("store_key") = py::none(),
          "Loads the data from the [EYEDIAGRAM] section of the INI file `path`, or from the\n"
          "settings store under `store_key`, or (neither) from the module's own store. A\n"
          "file is refused as the command line refuses it, with its reason, and the object left\n"
          "alone: FileNotFoundError when missing, IsADirectoryError for a folder, OSError when\n"
          "unreadable, ValueError when empty or no INI file. Data that loads\n"
          "as invalid is reset to the defaults (keeping the mask read) and raises ValueError\n"
          "with the message 'Invalid eye diagram data.\\nReverting to default values.'; the\n"
          "rule that failed is added as a note.");
    c.def("save", &Save, py::arg("path") = py::none(), py::kw_only(),
          py::arg("store_key") = py::none(),
          "Saves the data into the [EYEDIAGRAM] section of the INI file `path` (other sections\n"
          "are kept), or into the settings store under `store_key`, or into the module's own\n"
          "store, in one replace. A store that cannot be written raises OSError.");
    c.def("__copy__", [](const CStimulusData& d) { return CStimulusData(d); });
    c.def(
        "__deepcopy__", [](const CStimulusData& d, const py::dict&) { return CStimulusData(d); },
        py::arg("memo"));
}

}  // namespace kv::python
