import QtQuick
import QtTest
import Kestrova.Primitives

// Text has to stand out 4.5 : 1 from what is under it, symbols and rings 3 : 1 (WCAG 2.1, AA).
TestCase {
    name: "Theme"

    function cleanup(): void {
        Appearance.dark = false;
        Appearance.highContrast = false;
        Appearance.reducedMotion = false;
    }

    function luminance(color: color): real {
        const linear = part => part <= 0.04045 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }

    function contrast(color: color, surface: color): real {
        const seen = Qt.tint(surface, color);
        const [darker, lighter] = [luminance(seen), luminance(surface)].sort((a, b) => a - b);
        return (lighter + 0.05) / (darker + 0.05);
    }

    function over(surface: color, wash: color): color {
        return Qt.tint(surface, wash);
    }

    function test_textIsLegible_data(): var {
        return [{ tag: "light", dark: false }, { tag: "dark", dark: true }];
    }

    function test_textIsLegible(data: var): void {
        Appearance.dark = data.dark;
        const surfaces = ["window", "sidebar", "control", "field", "well", "tip", "segment"];
        for (const surface of surfaces)
            verify(contrast(Theme.primary, Theme[surface]) >= 4.5, "primary on " + surface);
        for (const surface of ["window", "sidebar", "control", "field"])
            verify(contrast(Theme.secondary, Theme[surface]) >= 4.5, "secondary on " + surface);
        for (const fill of ["greenFill", "orangeFill", "redFill"])
            verify(contrast(Theme.onFill, Theme[fill]) >= 4.5, "white on " + fill);
        for (const ground of [Theme.window, Theme.control]) {
            const track = over(ground, Theme.fill(Theme.grey, 0.16));
            verify(contrast(Theme.secondary, track) >= 4.5, "secondary on a picker's track");
            verify(contrast(Theme.primary, over(ground, Theme.fill(Theme.grey, 0.38))) >= 4.5, "primary on a pressed button");
        }
        verify(contrast(Theme.secondary, over(Theme.window, Theme.fill(Theme.orangeWash, 0.09))) >= 4.5, "secondary on a warning card");
        verify(contrast(Theme.primary, over(Theme.window, Theme.fill(Theme.redWash, 0.09))) >= 4.5, "primary on a danger card");
        verify(contrast(Theme.primary, over(Theme.sidebar, Theme.fill(Theme.accent, 0.22))) >= 4.5, "primary on a pressed sidebar row");
    }

    function test_signsStandOut_data(): var {
        return test_textIsLegible_data();
    }

    function test_signsStandOut(data: var): void {
        Appearance.dark = data.dark;
        for (const surface of ["window", "sidebar", "control"])
            verify(contrast(Theme.focus, Theme[surface]) >= 3, "focus ring on " + surface);
        verify(contrast(Theme.orange, over(Theme.window, Theme.fill(Theme.orangeWash, 0.09))) >= 3, "warning sign");
        // The accent is given; its labels are semibold and at least 11 pixels tall.
        verify(contrast(Theme.onFill, Theme.accent) >= 2.99, "white on the accent");
    }

    function test_theAccentIsTheSameInBothThemes(): void {
        for (const dark of [false, true]) {
            Appearance.dark = dark;
            fuzzyCompare(Theme.accent.r, 0.92, 0.003);
            fuzzyCompare(Theme.accent.g, 0.45, 0.003);
            fuzzyCompare(Theme.accent.b, 0.12, 0.003);
        }
    }

    function test_theHeatmapHasItsGreensInBothThemes_data(): var {
        return [{ tag: "level 1", name: "heatmapLevel1", color: "#1F5933" },
                { tag: "level 2", name: "heatmapLevel2", color: "#298042" },
                { tag: "level 3", name: "heatmapLevel3", color: "#33A84D" },
                { tag: "level 4", name: "heatmapLevel4", color: "#3DCC57" }];
    }

    function test_theHeatmapHasItsGreensInBothThemes(data: var): void {
        for (const dark of [false, true]) {
            Appearance.dark = dark;
            verify(Qt.colorEqual(Theme[data.name], data.color));
        }
    }

    function test_theOtherDaysOfTheHeatmapAreGrey(): void {
        verify(Qt.colorEqual(Theme.heatmapLevel0, Theme.wash(Theme.secondary, 0.18)));
        verify(Qt.colorEqual(Theme.heatmapUntracked, Theme.wash(Theme.secondary, 0.12)));
    }

    function test_highContrastStrengthensLinesAndWashes(): void {
        const border = Theme.border.a;
        const wash = Theme.fill(Theme.grey, 0.16).a;
        Appearance.highContrast = true;
        verify(Theme.border.a > 5 * border);
        fuzzyCompare(Theme.fill(Theme.grey, 0.16).a, 2 * wash, 0.01);
        verify(Qt.colorEqual(Theme.secondary, Theme.primary));
    }

    function test_reducedMotionKeepsShortFadesOnly(): void {
        compare(Theme.movement(240), 240);
        compare(Theme.fade(200), 200);
        Appearance.reducedMotion = true;
        compare(Theme.movement(240), 0);
        compare(Theme.fade(200), 80);
    }
}
