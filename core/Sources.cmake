# The core's sources, one file per line and sorted by folder, so that a change
# shows each file that comes or goes. The main build (core/CMakeLists.txt) and
# the fuzz build (fuzz/CMakeLists.txt) both compile this list, each once.
set(KV_CORE_SOURCES
    bitpattern/BitArray.cpp
    bitpattern/BitPatternEditor.cpp
    bitpattern/BitPatternLayout.cpp
    bitpattern/BitPatternPaint.cpp
    bitpattern/PatternPainters.cpp

    chart/AxisArithmetic.cpp
    chart/AxisScale.cpp
    chart/AxisText.cpp
    chart/Chart.cpp
    chart/ChartPaint.cpp
    chart/Curve.cpp
    chart/CurveReduction.cpp
    chart/SiPrefix.cpp

    eye/EyeAnalysis.cpp
    eye/EyeClock.cpp
    eye/EyeColourMap.cpp
    eye/EyeFold.cpp
    eye/EyeLevels.cpp
    eye/EyeMaskTest.cpp
    eye/EyeTrace.cpp
    eye/EyeView.cpp
    eye/EyeViewPaint.cpp
    eye/WaveformFile.cpp

    eyediagram/EdgeJitter.cpp
    eyediagram/EyeStimAdaptor.cpp
    eyediagram/EyeStimulusPageModel.cpp
    eyediagram/KindPattern.cpp
    eyediagram/MaskLibrary.cpp
    eyediagram/MaskOutline.cpp
    eyediagram/MaskPageModel.cpp
    eyediagram/PageFieldText.cpp
    eyediagram/StimWaveform.cpp
    eyediagram/StimulusEditPageModel.cpp
    eyediagram/StimulusLibrary.cpp
    eyediagram/StimulusOpenCheck.cpp
    eyediagram/StimulusTransfer.cpp
    eyediagram/WaveformPreview.cpp

    padstack/PadRecordMapping.cpp
    padstack/PadstackCellEdit.cpp
    padstack/PadstackEditModel.cpp
    padstack/PadstackMessages.cpp
    padstack/PadstackRules.cpp
    padstack/PadstackShapes.cpp
    padstack/PadstackTableChecks.cpp
    padstack/PadstackUnits.cpp

    ports/Canvas.cpp
    ports/Clock.cpp
    ports/FileChooser.cpp
    ports/MessagePort.cpp

    progress/DelayedShow.cpp
    progress/ProgressBarGeometry.cpp
    progress/ProgressTextUpdate.cpp

    settings/IniDocument.cpp
    settings/IniFileCheck.cpp
    settings/ProfileStore.cpp

    shared/AppProfile.cpp
    shared/AsciiText.cpp
    shared/Assert.cpp
    shared/BlankRemoval.cpp
    shared/BoundedCopy.cpp
    shared/CompactExponent.cpp
    shared/DateStamp.cpp
    shared/DialogUnits.cpp
    shared/EngineeringParse.cpp
    shared/FileIo.cpp
    shared/LocalTime.cpp
    shared/NameCollation.cpp
    shared/NumberText.cpp
    shared/TextLines.cpp
    shared/UnitFormat.cpp

    stimulus/BitFile.cpp
    stimulus/CheckStream.cpp
    stimulus/Code8b10b.cpp
    stimulus/EyeMask.cpp
    stimulus/FixedPatterns.cpp
    stimulus/Jitter.cpp
    stimulus/JitterSeed.cpp
    stimulus/Random.cpp
    stimulus/RegisterFill.cpp
    stimulus/SequenceType.cpp
    stimulus/ShiftRegister.cpp
    stimulus/StimulusData.cpp
    stimulus/StimulusPersistence.cpp
    stimulus/StimulusRules.cpp
    stimulus/StreamCheck.cpp
    stimulus/SymbolSource.cpp
    stimulus/Uuencode.cpp

    via/PadOutline.cpp
    via/PadstackDump.cpp
    via/ViaSideLayout.cpp
    via/ViaSidePaint.cpp
    via/ViaSideText.cpp
    via/ViaSpiceExport.cpp
    via/ViaSpiceNodes.cpp
    via/ViaSpiceWriter.cpp
    via/ViaTopView.cpp
    via/ViaViewStyle.cpp
    via/ViaVisualizer.cpp
    via/ViaVizData.cpp

    walker/CoupledNetsList.cpp
    walker/CrossSection.cpp
    walker/RegionCaption.cpp
)
list(TRANSFORM KV_CORE_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
