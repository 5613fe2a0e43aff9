import QtQuick
import QtTest
import Kestrova.Primitives

TestCase {
    name: "Cards"

    Component {
        id: cardComponent

        SurfaceCard {}
    }

    function test_onlyAStandardCardIsTinted_data(): var {
        return [
            { tag: "standard", tone: SurfaceCardTone.Standard, tinted: true },
            { tag: "warning", tone: SurfaceCardTone.Warning, tinted: false },
            { tag: "danger", tone: SurfaceCardTone.Danger, tinted: false }
        ];
    }

    function test_onlyAStandardCardIsTinted(data: var): void {
        const plain = createTemporaryObject(cardComponent, this, { tone: data.tone });
        const tinted = createTemporaryObject(cardComponent, this, { tone: data.tone, tint: "#0000FF" });
        compare(!Qt.colorEqual(plain.color, tinted.color), data.tinted);
    }

    Component {
        id: pillComponent

        StatusPill {
            property int tone
            property string icon

            status.text: "Ready"
            status.tone: tone
            status.icon: icon
        }
    }

    function test_aPillIsWiderByItsIconOnly(): void {
        const plain = createTemporaryObject(pillComponent, this);
        const withIcon = createTemporaryObject(pillComponent, this, { icon: "checkmark" });
        compare(Math.round(withIcon.implicitWidth - plain.implicitWidth), 9 + 4);
        compare(withIcon.implicitHeight, plain.implicitHeight);
        compare(withIcon.radius, plain.radius);
    }

    function test_onlyANeutralPillHasPrimaryText(): void {
        const tones = [StatusPillTone.Neutral, StatusPillTone.Success, StatusPillTone.Warning,
                       StatusPillTone.Danger, StatusPillTone.Recording];
        const colors = tones.map(tone => createTemporaryObject(pillComponent, this, { tone: tone }).textColor);
        verify(Qt.colorEqual(colors[0], Theme.primary));
        for (const color of colors.slice(1))
            verify(Qt.colorEqual(color, "white"));
    }

    Component {
        id: headerComponent

        SectionHeader {
            title: "Setup Needed"
        }
    }

    function test_aHeaderWithoutSubtitleIsOneLineTall(): void {
        const header = createTemporaryObject(headerComponent, this);
        compare(header.implicitHeight, Theme.headline.lineHeight);
        const both = createTemporaryObject(headerComponent, this, { subtitle: "Complete" });
        compare(both.implicitHeight, Theme.headline.lineHeight + 2 + Theme.caption.lineHeight);
    }
}
