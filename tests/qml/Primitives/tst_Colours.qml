import QtQuick
import QtTest
import Kestrova.Primitives

// The colours, sizes and symbols of the theme and the controls, as figures: a change of one is seen here.
TestCase {
    name: "Colours"

    function cleanup(): void {
        Appearance.dark = false;
        Appearance.highContrast = false;
    }

    // Alpha first, as Qt writes it.
    function argb(color: color): string {
        const two = part => Math.round(part * 255).toString(16).padStart(2, "0");
        return "#" + two(color.a) + two(color.r) + two(color.g) + two(color.b);
    }

    function test_theThemesColours_data(): var {
        return [
            { tag: "window", light: "#fff6f5f3", dark: "#ff1d1b1a" },
            { tag: "sidebar", light: "#ffedebe8", dark: "#ff252322" },
            { tag: "control", light: "#ffffffff", dark: "#ff2a2826" },
            { tag: "field", light: "#ffffffff", dark: "#ff1f1d1c" },
            { tag: "well", light: "#fffaf9f7", dark: "#ff1f1d1c" },
            { tag: "tip", light: "#ffffffff", dark: "#ff383532" },
            { tag: "segment", light: "#ffffffff", dark: "#ff4b4744" },
            { tag: "primary", light: "#ff1f1c1a", dark: "#fff4f1ed" },
            { tag: "secondary", light: "#ff66615c", dark: "#ffaba59e" },
            { tag: "grey", light: "#ff8a8580", dark: "#ff98928b" },
            { tag: "focus", light: "#ffc4560e", dark: "#ffff9c57" },
            { tag: "onFill", light: "#ffffffff", dark: "#ffffffff" },
            { tag: "accent", light: "#ffeb731f", dark: "#ffeb731f" },
            { tag: "accentHover", light: "#ffdb6b1d", dark: "#ffdb6b1d" },
            { tag: "accentPressed", light: "#ffc8621a", dark: "#ffc8621a" },
            { tag: "accentSoft", light: "#fff3ab79", dark: "#ff9e5522" },
            { tag: "greenFill", light: "#ff1f7a43", dark: "#ff23834a" },
            { tag: "green", light: "#ff1f7a43", dark: "#ff5cc983" },
            { tag: "orangeFill", light: "#ffae6000", dark: "#ffae6000" },
            { tag: "orange", light: "#ffc26a00", dark: "#fff5a544" },
            { tag: "orangeWash", light: "#ffe07b00", dark: "#fff5a544" },
            { tag: "redFill", light: "#ffc4302b", dark: "#ffcc3d37" },
            { tag: "red", light: "#ffc4302b", dark: "#ffff7a70" },
            { tag: "redWash", light: "#ffd0302a", dark: "#ffff695f" },
            { tag: "border", light: "#1a1f1c1a", dark: "#1af4f1ed" },
            { tag: "heatmapLevel0", light: "#2e66615c", dark: "#2eaba59e" },
            { tag: "heatmapLevel1", light: "#ff1f5933", dark: "#ff1f5933" },
            { tag: "heatmapLevel2", light: "#ff298042", dark: "#ff298042" },
            { tag: "heatmapLevel3", light: "#ff33a84d", dark: "#ff33a84d" },
            { tag: "heatmapLevel4", light: "#ff3dcc57", dark: "#ff3dcc57" },
            { tag: "heatmapUntracked", light: "#1f66615c", dark: "#1faba59e" }
        ];
    }

    function test_theThemesColours(data: var): void {
        compare(argb(Theme[data.tag]), data.light);
        Appearance.dark = true;
        compare(argb(Theme[data.tag]), data.dark);
    }

    Component {
        id: pillComponent

        StatusPill {
            property int tone

            status.text: "Ready"
            status.tone: tone
            status.icon: "checkmark"
        }
    }

    function test_aPillsColours_data(): var {
        return [
            { tag: "neutral", tone: StatusPillTone.Neutral, fill: "#298a8580", text: "#ff1f1c1a" },
            { tag: "success", tone: StatusPillTone.Success, fill: "#ff1f7a43", text: "#ffffffff" },
            { tag: "warning", tone: StatusPillTone.Warning, fill: "#ffae6000", text: "#ffffffff" },
            { tag: "danger", tone: StatusPillTone.Danger, fill: "#ffc4302b", text: "#ffffffff" },
            { tag: "recording", tone: StatusPillTone.Recording, fill: "#ffeb731f", text: "#ffffffff" }
        ];
    }

    function test_aPillsColours(data: var): void {
        const pill = createTemporaryObject(pillComponent, this, { tone: data.tone });
        compare(argb(pill.color), data.fill);
        compare(argb(pill.textColor), data.text);
        compare(pill.height, 14 + 6);
        compare(pill.radius, 10);
    }

    Component {
        id: cardComponent

        SurfaceCard {}
    }

    function test_aCardsColours_data(): var {
        return [
            { tag: "standard", tone: SurfaceCardTone.Standard, fill: "#ffffffff", line: "#1a1f1c1a" },
            { tag: "warning", tone: SurfaceCardTone.Warning, fill: "#17e07b00", line: "#4de07b00" },
            { tag: "danger", tone: SurfaceCardTone.Danger, fill: "#17d0302a", line: "#59d0302a" }
        ];
    }

    function test_aCardsColours(data: var): void {
        const card = createTemporaryObject(cardComponent, this, { tone: data.tone });
        compare(argb(card.color), data.fill);
        compare(argb(card.border.color), data.line);
        compare(card.border.width, 1);
        compare(card.radius, 10);
        compare(card.padding, 12);
    }

    Component {
        id: buttonComponent

        PushButton {
            text: "Fix"
        }
    }

    function test_aButtonsLooks_data(): var {
        return [
            { tag: "bordered", look: {}, fill: "#298a8580", text: "#ff1f1c1a", height: 28 },
            { tag: "prominent", look: { prominent: true }, fill: "#ffeb731f", text: "#ffffffff", height: 28 },
            { tag: "small", look: { small: true }, fill: "#298a8580", text: "#ff1f1c1a", height: 22 },
            { tag: "off", look: { enabled: false }, fill: "#1a8a8580", text: "#8c66615c", height: 28 },
            { tag: "busy", look: { busy: true, enabled: false }, fill: "#248a8580", text: "#ff66615c", height: 28 }
        ];
    }

    function test_aButtonsLooks(data: var): void {
        const button = createTemporaryObject(buttonComponent, this, data.look);
        compare(argb(button.fillColor()), data.fill);
        compare(argb(button.foreground), data.text);
        compare(button.implicitHeight, data.height);
        compare(button.background.radius, 10);
    }

    Component {
        id: iconButtonComponent

        IconButton {
            symbol: "gear"
            tip: "Open Settings"
        }
    }

    function test_anIconButtonIsSquare(): void {
        const button = createTemporaryObject(iconButtonComponent, this);
        compare(button.implicitWidth, 26);
        compare(button.implicitHeight, 26);
        compare(button.background.radius, 10);
        compare(argb(button.background.color), "#1a8a8580");
        const symbol = button.contentItem.children[0];
        compare(symbol.name, "gear");
        compare(symbol.size, 13);
        compare(argb(symbol.color), "#ff66615c");
    }
}
