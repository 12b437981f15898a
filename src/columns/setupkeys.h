#pragma once

/// The keys of the browser's part of a stored setup, and the types of its views, for readers and writers alike: a word
/// that is misspelt reads as absent, and nothing tells of it.
namespace Tsb::SetupKeys {

// An entry of the list of views; a view that shows several kinds of things has a "type" of its own too.
inline constexpr char type[] = "type";
inline constexpr char settings[] = "settings";

// The type of an entry.
inline constexpr char opmodeView[] = "opmode";
inline constexpr char scatterPlotView[] = "scatterplot";
inline constexpr char spectrogramView[] = "spectrogram";

// Settings of views.
inline constexpr char height[] = "height";
inline constexpr char isScaleFitted[] = "isScaleFitted"; ///< written where it is: nobody set the scale or the colours

// ... of a mode strip; its type is "opmode" or "flag".
inline constexpr char flag[] = "flag";

// ... of a scatter plot.
inline constexpr char propertiesVisible[] = "propertiesVisible";
inline constexpr char datalabels[] = "datalabels";
inline constexpr char scaleMin[] = "scaleMin";
inline constexpr char scaleMax[] = "scaleMax";
inline constexpr char electrometerNumber[] = "electrometerNumber";
inline constexpr char showRawCurrents[] = "showRawCurrents";
inline constexpr char showProcessedCurrents[] = "showProcessedCurrents";
inline constexpr char showElectrometerNoise[] = "showElectrometerNoise";
inline constexpr char parameterName[] = "parameterName";
inline constexpr char visibleSpectra[] = "visibleSpectra"; ///< a spectrogram says "spectra"
inline constexpr char fractionScale[] = "fractionScale";
inline constexpr char concentrationType[] = "concentrationType";
inline constexpr char totalConcentration[] = "totalConcentration";
inline constexpr char diameterSmallerLimit[] = "diameterSmallerLimit";
inline constexpr char diameterLargerLimit[] = "diameterLargerLimit";
inline constexpr char mobilitySmallerLimit[] = "mobilitySmallerLimit";
inline constexpr char mobilityLargerLimit[] = "mobilityLargerLimit";
inline constexpr char spectrumParameter[] = "spectrumParameter";

// ... of a spectrogram.
inline constexpr char spectra[] = "spectra";
inline constexpr char colorLower[] = "colorLower";
inline constexpr char colorUpper[] = "colorUpper";
inline constexpr char autoFillGaps[] = "autoFillGaps";
inline constexpr char smoothingEnabled[] = "smoothingEnabled";
inline constexpr char smoothingCoef[] = "smoothingCoef";
inline constexpr char colormap[] = "colormap";
inline constexpr char whiteBackground[] = "whiteBackground";
inline constexpr char markZeros[] = "markZeros"; ///< written where it is on, as the next one
inline constexpr char lockColors[] = "lockColors";

} // namespace Tsb::SetupKeys
