"""Type stub of the kvcomctl package, for editors and type checkers."""

import os
from typing import Any, List, Optional, Tuple, Union

import numpy as np
import numpy.typing as npt

_Bits = npt.NDArray[np.uint8]
_BitsIn = Union[npt.NDArray[np.uint8], npt.NDArray[np.bool_]]
_Path = Union[str, os.PathLike[str]]
_Samples = npt.NDArray[np.float64]

def prbs(degree: int, init: int = 0) -> _Bits:
    """The maximal-length shift-register sequence of degree 1 to 30, first bit `init`."""

def code_8b10b(cycles: int, seed: Optional[int] = None) -> _Bits:
    """`cycles` random 8B/10B code groups, ten bits each."""

def usb_compliance() -> _Bits:
    """The 330 bits of the USB 2.0 compliance pattern."""

def toggling(init: int = 0) -> _Bits:
    """The two bits of the toggling sequence from the starting state `init`."""

def random_bits(count: int, seed: int) -> _Bits:
    """`count` random bits from the random generator seeded with `seed`."""

def check_8b10b(bits: _BitsIn, start: int = 6) -> Optional[str]:
    """None when the 8B/10B line rules hold, else the text of the broken rule."""

def read_bit_file(path: _Path) -> _Bits:
    """The bits of a .bit file; OSError or ValueError with the library's message."""

def write_bit_file(path: _Path, bits: _BitsIn) -> None:
    """Writes the bits as a .bit file, replacing it whole."""

def axis(
    lo: float,
    hi: float,
    pixels: int,
    log: bool = False,
    prefixes: bool = True,
    unit: str = "",
    spacing: Optional[int] = None,
    y: bool = False,
) -> Tuple[Tuple[float, float], float, int, List[Tuple[float, str]]]:
    """One chart axis: ((lo', hi'), step, label interval, [(value, label), ...])."""

def eye(
    time: npt.ArrayLike,
    volts: npt.ArrayLike,
    interval: float,
    eyes: int = 1,
    skip: int = 0,
    width: int = 1000,
    height: int = 600,
    volts_range: Optional[Tuple[float, float]] = None,
    mask: Optional["EyeMask"] = None,
) -> Tuple[npt.NDArray[np.uint32], dict[str, Any]]:
    """The eye's density (height x width, row 0 lowest) and its measurements."""

def format_length(metres: float, metric: bool = False) -> Tuple[str, bool]:
    """A length as text in mils and inches, or metric units; (text, in range)."""

def format_capacitance(value: float) -> Tuple[str, bool]:
    """Farads as text with an engineering unit; (text, in range)."""

def format_inductance(value: float) -> Tuple[str, bool]:
    """Henries as text with an engineering unit; (text, in range)."""

def format_resistance(value: float) -> Tuple[str, bool]:
    """Ohms as text with an engineering unit; (text, in range)."""

def format_frequency(value: float) -> Tuple[str, bool]:
    """Hertz as text with an engineering unit; (text, in range)."""

def format_time(value: float) -> Tuple[str, bool]:
    """Seconds as text with an engineering unit; (text, in range)."""

def format_voltage(value: float) -> Tuple[str, bool]:
    """Volts as text with an engineering unit; (text, in range)."""

def parse_engineering(
    text: str, spice: bool = False, ampere: bool = False, farad: bool = False
) -> float:
    """An engineering value such as '1.5 n'; ValueError when there is none."""

def via_spice(description: dict[str, Any], metric: bool = False) -> str:
    """The SPICE subcircuit of the via description (the command line's JSON as a dict)."""

def padstack_dump(description: dict[str, Any]) -> str:
    """The padstack diagnostic dump of every via of the description."""

class EyeMask:
    """An eye mask: levels, time points, placement and library name."""

    top_max: float  # PTOPMAX
    top_min: float  # PTOPMIN
    base_min: float  # PBASEMIN
    base_max: float  # PBASEMAX
    cross: float  # PCROSS
    cross1_min: float  # TCROSS1MIN
    cross1_max: float  # TCROSS1MAX
    rise_delay: float  # TRISEDELAY
    cross2_max: float  # TCROSS2MAX
    cross2_min: float  # TCROSS2MIN
    fall_delay: float  # TFALLDELAY
    scale_time: float  # SCALETIME
    scale_volt: float  # SCALEVOLT
    offset_time: float  # OFFSETTIME
    offset_volt: float  # OFFSETVOLT
    name: str  # MASKNAME
    def __init__(self) -> None: ...
    def order_error(self) -> Optional[str]:
        """None when in order, else the message of the first value out of order."""
    def placement_error(self) -> Optional[str]:
        """None when the placement may be shown, else the message of the value out of range."""
    def __eq__(self, other: object) -> bool: ...
    def __copy__(self) -> "EyeMask": ...
    def __deepcopy__(self, memo: dict[Any, Any]) -> "EyeMask": ...

class StimulusData:
    """The stimulus and eye-diagram set-up of one simulation."""

    cycle_count: int  # CYCLECOUNT
    skip_bits: int  # SKIPBITS
    eye_count: int  # EYECOUNT
    period: float  # PERIOD
    duty_cycle: float  # DUTYCYCLE
    max_jitter: float  # MAXJITTER
    random_freq: float  # RANDOMFREQ
    sine_mag: float  # SINEMAG
    sine_freq: float  # SINEFREQ
    sine_init: float  # SINEINIT
    uniform_mag: float  # UNIFORMMAG
    uniform_mean: float  # UNIFORMMEAN
    add_gaussian: bool  # ADDGAUSSIAN
    add_uniform: bool  # ADDUNIFORM
    add_sine: bool  # ADDSINE
    advanced_jitter: bool  # ADVJITTER
    gaussian_freq_measured: bool  # GAUSSIANFREQMEAS
    uniform_freq_measured: bool  # UNIFORMFREQMEAS
    sine_freq_measured: bool  # SINEFREQMEAS
    jitter_type: int  # JITTERTYPE
    jitter_repeatable: bool  # JITTERREPEATABLE
    gaussian_jitter_as_time: bool  # GAUSSIANJITASTIME
    uniform_jitter_as_time: bool  # UNIFORMJITASTIME
    sine_jitter_as_time: bool  # SINEJITASTIME
    seq_type: int  # SEQTYPE
    init_state: int  # INITSTATE
    poly_degree: int  # POLYDEGREE
    aux_flag: bool  # not stored
    list_mode: int  # not stored
    cycle_marks: list[int]  # not stored
    description: str  # not stored
    @property
    def bits(self) -> _Bits:
        """The bit sequence (SEQUENCELENGTH, BITSEQUENCE)."""
    @bits.setter
    def bits(self, value: _BitsIn) -> None: ...
    @property
    def mask(self) -> EyeMask:
        """The eye mask, changed in place."""
    @mask.setter
    def mask(self, value: EyeMask) -> None: ...
    def __init__(self) -> None: ...
    def invalid_reason(self) -> Optional[str]:
        """None when load's check would pass, else the first rule broken."""
    def generate(self) -> None:
        """Makes the bits again from the sequence settings."""
    def load(self, path: Optional[_Path] = None, *, store_key: Optional[str] = None) -> None:
        """Loads from an INI file, a settings-store key or the module's own store."""
    def save(self, path: Optional[_Path] = None, *, store_key: Optional[str] = None) -> None:
        """Saves to an INI file, a settings-store key or the module's own store."""
    def __copy__(self) -> "StimulusData": ...
    def __deepcopy__(self, memo: dict[Any, Any]) -> "StimulusData": ...

def jittered_waveform(
    stimulus: StimulusData,
    *,
    low: float = 0.0,
    high: float = 1.0,
    rise: Optional[float] = None,
    fall: Optional[float] = None,
) -> Tuple[_Samples, _Samples]:
    """The waveform's corner points with its jitter: (time in s, volts); ValueError if none."""
