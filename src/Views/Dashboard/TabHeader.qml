import Kestrova.Primitives

// The heading of a tab and what explains it.
SectionHeader {
    titleStyle: Theme.title
    subtitleStyle: Theme.wrappingBody
}
