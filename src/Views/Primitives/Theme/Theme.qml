pragma Singleton

import QtQuick
import Kestrova.Primitives

// Every colour, type size, radius and duration of the windows (docs/design-guide.md).
QtObject {
    readonly property bool dark: Appearance.dark
    readonly property bool highContrast: Appearance.highContrast
    readonly property bool reducedMotion: Appearance.reducedMotion

    // Surfaces and text
    readonly property color window: dark ? "#1D1B1A" : "#F6F5F3"
    readonly property color sidebar: dark ? "#252322" : "#EDEBE8"
    readonly property color control: dark ? "#2A2826" : "#FFFFFF"
    readonly property color field: dark ? "#1F1D1C" : "#FFFFFF"
    readonly property color well: dark ? "#1F1D1C" : "#FAF9F7"
    readonly property color tip: dark ? "#383532" : "#FFFFFF"
    readonly property color segment: dark ? "#4B4744" : "#FFFFFF"
    readonly property color primary: dark ? "#F4F1ED" : "#1F1C1A"
    readonly property color secondary: highContrast ? primary : dark ? "#ABA59E" : "#66615C"
    readonly property color grey: dark ? "#98928B" : "#8A8580"
    readonly property color focus: dark ? "#FF9C57" : "#C4560E"
    readonly property color onFill: "#FFFFFF"

    // The accent is sRGB 0.92, 0.45, 0.12 in both themes.
    readonly property color accent: "#EB731F"
    readonly property color accentHover: "#DB6B1D"
    readonly property color accentPressed: "#C8621A"
    readonly property color accentSoft: dark ? "#9E5522" : "#F3AB79"

    // Severity: a fill goes under white text, a wash under dark text, the plain one is a sign's.
    readonly property color greenFill: dark ? "#23834A" : "#1F7A43"
    readonly property color green: dark ? "#5CC983" : "#1F7A43"
    readonly property color orangeFill: "#AE6000"
    readonly property color orange: dark ? "#F5A544" : "#C26A00"
    readonly property color orangeWash: dark ? "#F5A544" : "#E07B00"
    readonly property color redFill: dark ? "#CC3D37" : "#C4302B"
    readonly property color red: dark ? "#FF7A70" : "#C4302B"
    readonly property color redWash: dark ? "#FF695F" : "#D0302A"

    // Lines
    readonly property color border: wash(primary, highContrast ? 0.6 : 0.1)
    readonly property color overlayBorder: wash(primary, highContrast ? 0.6 : dark ? 0.16 : 0.14)
    readonly property color overlayShadow: dark ? "#73000000" : "#29000000"
    readonly property color windowShadow: dark ? "#99000000" : "#3D000000"
    readonly property color dimming: dark ? "#66000000" : "#33000000"

    // Heatmap, from no words to the most
    readonly property color heatmapLevel0: wash(secondary, 0.18)
    readonly property color heatmapLevel1: "#1F5933"
    readonly property color heatmapLevel2: "#298042"
    readonly property color heatmapLevel3: "#33A84D"
    readonly property color heatmapLevel4: "#3DCC57"
    readonly property color heatmapUntracked: wash(secondary, 0.12)

    // Corners
    readonly property int cornerSegment: 6
    readonly property int cornerField: 8
    readonly property int cornerCard: 10
    readonly property int cornerWindow: 12

    // Text styles
    readonly property TextStyle largeTitle: TextStyle { size: 26; lineHeight: 32; weight: Font.Bold; tracking: -0.2 }
    readonly property TextStyle title: TextStyle { size: 22; lineHeight: 26; weight: Font.DemiBold }
    readonly property TextStyle title2: TextStyle { size: 17; lineHeight: 22; weight: Font.Bold }
    readonly property TextStyle title3: TextStyle { size: 15; lineHeight: 20; monospaced: true; tracking: 0.8 }
    readonly property TextStyle headline: TextStyle { size: 13; lineHeight: 16; weight: Font.Bold }
    readonly property TextStyle body: TextStyle { size: 13; lineHeight: 16 }
    readonly property TextStyle wrappingBody: TextStyle { size: 13; lineHeight: 18 }
    readonly property TextStyle bodyMonospaced: TextStyle { size: 13; lineHeight: 16; monospaced: true }
    readonly property TextStyle button: TextStyle { size: 13; lineHeight: 16; weight: Font.Medium }
    readonly property TextStyle prominentButton: TextStyle { size: 13; lineHeight: 16; weight: Font.DemiBold }
    readonly property TextStyle smallButton: TextStyle { size: 11; lineHeight: 14; weight: Font.Medium }
    readonly property TextStyle footerButton: TextStyle { size: 12; lineHeight: 16; weight: Font.DemiBold }
    readonly property TextStyle callout: TextStyle { size: 12; lineHeight: 16 }
    readonly property TextStyle code: TextStyle { size: 11; lineHeight: 15; monospaced: true }
    readonly property TextStyle subheadline: TextStyle { size: 11; lineHeight: 14; weight: Font.DemiBold }
    readonly property TextStyle tooltip: TextStyle { size: 11; lineHeight: 14 }
    readonly property TextStyle caption: TextStyle { size: 10; lineHeight: 13; tracking: 0.05 }
    readonly property TextStyle pill: TextStyle { size: 11; lineHeight: 14; weight: Font.DemiBold; tracking: 0.1 }
    readonly property TextStyle metric: TextStyle { size: 32; lineHeight: 40; weight: Font.Bold; tracking: 0.1 }
    readonly property TextStyle compactMetric: TextStyle { size: 20; lineHeight: 24; weight: Font.DemiBold }

    // Durations, in milliseconds
    readonly property int hoverFade: fade(90)
    readonly property int slide: movement(160)
    readonly property int fadeIn: fade(140)
    readonly property int fadeOut: fade(90)
    readonly property int sheetIn: fade(200)
    readonly property int sheetOut: fade(140)
    readonly property int reveal: movement(180)
    readonly property int chart: movement(240)
    readonly property int spinnerTurn: 900
    readonly property int tipDelay: 500
    readonly property int tipTimeout: 10000

    // A colour laid thinly over a surface.
    function wash(color: color, opacity: real): color {
        return Qt.rgba(color.r, color.g, color.b, opacity)
    }

    // A wash that high contrast makes stronger.
    function fill(color: color, opacity: real): color {
        return wash(color, highContrast ? Math.min(1, 2 * opacity) : opacity)
    }

    function fade(duration: int): int {
        return reducedMotion ? Math.min(duration, 80) : duration
    }

    function movement(duration: int): int {
        return reducedMotion ? 0 : duration
    }
}
