#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The elements of HTML that the parser, the style sheets or the converter treat in their own way.
namespace caddis::html {

enum class Tag : std::uint8_t {
    Other, ///< any other element
    Text, ///< no element
    A,
    Address,
    Applet,
    Area,
    Article,
    Aside,
    Audio,
    B,
    Base,
    Big,
    Blockquote,
    Body,
    Br,
    Button,
    Caption,
    Center,
    Code,
    Col,
    Colgroup,
    Dd,
    Del,
    Details,
    Dialog,
    Dir,
    Div,
    Dl,
    Dt,
    Em,
    Embed,
    Fieldset,
    Figcaption,
    Figure,
    Font,
    Footer,
    Form,
    Frame,
    Frameset,
    H1,
    H2,
    H3,
    H4,
    H5,
    H6,
    Head,
    Header,
    Hgroup,
    Hr,
    Html,
    I,
    Iframe,
    Img,
    Input,
    Ins,
    Kbd,
    Li,
    Link,
    Main,
    Map,
    Marquee,
    Math,
    Menu,
    Meta,
    Nav,
    Nobr,
    Noembed,
    Noframes,
    Noscript,
    Object,
    Ol,
    Optgroup,
    Option,
    P,
    Param,
    Picture,
    Plaintext,
    Pre,
    Q,
    S,
    Samp,
    Script,
    Search,
    Section,
    Select,
    Small,
    Source,
    Span,
    Strike,
    Strong,
    Style,
    Sub,
    Summary,
    Sup,
    Svg,
    Table,
    Tbody,
    Td,
    Template,
    Textarea,
    Tfoot,
    Th,
    Thead,
    Title,
    Tr,
    Track,
    Tt,
    U,
    Ul,
    Var,
    Video,
    Wbr,
    Xmp,
    Count,
};

/// How the parser treats an element (HTML Standard, sections 13.1.2 and 13.2.6).
enum TagTraits : std::uint8_t {
    IsVoid = 1, ///< has no content
    ClosesParagraph = 2, ///< ends an open p
    IsFormatting = 4, ///< b, i and the like, which pages close in any order
    IsScope = 8, ///< an end tag inside it ends nothing outside
    IsRaw = 16, ///< its content is text up to its end tag, without references
    IsEscapableRaw = 32, ///< the same with references
    IsHeadContent = 64, ///< may stand in a head
};

std::uint8_t traitsOf(Tag tag);
/// The element's name in lower case.
std::u16string_view nameOf(Tag tag);
/// Tag::Other for what is not listed; `name` is in lower case.
Tag tagNamed(std::u16string_view name);

constexpr bool isHeading(Tag tag) { return tag >= Tag::H1 && tag <= Tag::H6; }

} // namespace caddis::html
