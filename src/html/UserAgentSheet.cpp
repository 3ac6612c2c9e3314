#include "html/Cascade.h"

namespace caddis::css {

const StyleSheet& userAgentSheet()
{
    static const StyleSheet sheet = parseStyleSheet(String(uR"css(
html, body, address, article, aside, blockquote, center, dd, details, dialog, dir, div, dl, dt, fieldset,
figcaption, figure, footer, form, frameset, frame, h1, h2, h3, h4, h5, h6, header, hgroup, hr, legend, listing, main,
menu, nav, noframes, ol, optgroup, option, p, plaintext, pre, search, section, summary, ul, xmp { display: block }
area, base, basefont, datalist, head, link, meta, noembed, param, rp, script, style, template, title, track,
audio, video, canvas, svg, source, option ~ option, [hidden] { display: none }
noscript { display: inline }
li { display: list-item }
ruby { display: ruby } rt { display: ruby-text }
input, button, select, textarea, meter, progress, marquee { display: inline-block }
input[type=hidden i] { display: none }

body { margin: 8px }
p, dl, blockquote, figure, dir, menu, ol, ul, pre, listing, plaintext, xmp { margin-top: 1em; margin-bottom: 1em }
blockquote, figure { margin-left: 40px; margin-right: 40px }
dd { margin-left: 40px }
ul ul, ul ol, ul dl, ol ul, ol ol, ol dl, dl ul, dl ol, dl dl { margin-top: 0; margin-bottom: 0 }
h1 { font-size: 2em; margin-top: .67em; margin-bottom: .67em }
:is(article, aside, nav, section) h1 { font-size: 1.5em }
:is(article, aside, nav, section) :is(article, aside, nav, section) h1 { font-size: 1.17em }
h2 { font-size: 1.5em; margin-top: .83em; margin-bottom: .83em }
h3 { font-size: 1.17em; margin-top: 1em; margin-bottom: 1em }
h4 { margin-top: 1.33em; margin-bottom: 1.33em }
h5 { font-size: .83em; margin-top: 1.67em; margin-bottom: 1.67em }
h6 { font-size: .67em; margin-top: 2.33em; margin-bottom: 2.33em }
h1, h2, h3, h4, h5, h6, b, strong, th { font-weight: bold }
i, em, cite, var, dfn, address { font-style: italic }
tt, code, kbd, samp, pre, listing, plaintext, xmp, textarea { font-family: monospace }
pre, listing, plaintext, xmp, textarea { white-space: pre-wrap }
big { font-size: larger }
small { font-size: smaller }
sub { vertical-align: sub; font-size: smaller }
sup { vertical-align: super; font-size: smaller }
u, ins { text-decoration: underline }
s, strike, del { text-decoration: line-through }
mark { background: yellow }
a:link { color: #00e; text-decoration: underline }
center { text-align: -webkit-center }
nobr { white-space: nowrap }

ul, dir, menu { list-style-type: disc }
ol { list-style-type: decimal }
ul ul, ol ul, menu ul, dir ul, ul menu, ol menu { list-style-type: circle }
ul ul ul, ul ol ul, ol ul ul, ol ol ul { list-style-type: square }

table { display: table; border-spacing: 2px; text-indent: 0 }
caption { display: table-caption; text-align: center }
colgroup { display: table-column-group }
col { display: table-column }
thead { display: table-header-group }
tbody { display: table-row-group }
tfoot { display: table-footer-group }
tr { display: table-row }
td, th { display: table-cell; padding: 1px }
th { text-align: center }
)css"));
    return sheet;
}

} // namespace caddis::css
