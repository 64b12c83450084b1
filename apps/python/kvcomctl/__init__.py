"""Signal-integrity data objects, bit sequences and exports of KVComCtl.

Bit sequences are numpy.uint8 arrays of 0 and 1. Errors are Python exceptions that carry
the library's own messages.
"""

from ._core import (
    EyeMask,
    StimulusData,
    axis,
    check_8b10b,
    code_8b10b,
    eye,
    format_capacitance,
    format_frequency,
    format_inductance,
    format_length,
    format_resistance,
    format_time,
    format_voltage,
    jittered_waveform,
    padstack_dump,
    parse_engineering,
    prbs,
    random_bits,
    read_bit_file,
    toggling,
    usb_compliance,
    via_spice,
    write_bit_file,
)

__all__ = [
    "EyeMask",
    "StimulusData",
    "axis",
    "check_8b10b",
    "code_8b10b",
    "eye",
    "format_capacitance",
    "format_frequency",
    "format_inductance",
    "format_length",
    "format_resistance",
    "format_time",
    "format_voltage",
    "jittered_waveform",
    "padstack_dump",
    "parse_engineering",
    "prbs",
    "random_bits",
    "read_bit_file",
    "toggling",
    "usb_compliance",
    "via_spice",
    "write_bit_file",
]
