#pragma once

/// The keys of a window setup, beside those of the views themselves, and the parts of one that can be restored apart.
namespace WindowSetup {

namespace Keys {

inline constexpr char version[] = "version";
inline constexpr char timeseries[] = "timeseries";
inline constexpr char electrometersView[] = "electrometersview";
inline constexpr char diagnosticView[] = "diagnosticview";
inline constexpr char electrometersPlot[] = "electrometersplot";
inline constexpr char spectraView[] = "spectraView";
inline constexpr char varGridView[] = "vargridview";
inline constexpr char mainWindow[] = "mainwindow";
inline constexpr char autosaveSettings[] = "autosavesettings";
// Readers of the format's first writers ignore these:
inline constexpr char leftColumn[] = "leftcolumn";         ///< width in pixels
inline constexpr char scrolled[] = "scrolled";             ///< height of the stack above what is seen, in pixels
inline constexpr char spectrumColors[] = "spectrumcolors"; ///< "#rrggbb" by hash
inline constexpr char keptPlace[] = "keptplace";

// ... of the map "mainwindow".
inline constexpr char geometry[] = "geometry";
inline constexpr char state[] = "state";
inline constexpr char maximized[] = "maximized";

// ... of the views that have a table.
inline constexpr char headerState[] = "headerstate";

} // namespace Keys

/// Of the setups that are written. Those of version 1 and below are no longer understood.
inline constexpr int currentVersion = 2;

/// The parts of a setup, as bits.
enum Part : unsigned {
    Geometry = 1,
    DockState = 16,
    RecordViews = 32,
    Timeseries = 64,
    Autosave = 128,

    OfDefault = DockState | RecordViews,
    /// Opening data never moves the window.
    OfOpenedData = DockState | RecordViews | Timeseries | Autosave,
    All = OfOpenedData | Geometry
};

} // namespace WindowSetup
