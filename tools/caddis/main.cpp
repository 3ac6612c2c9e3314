// caddis: the application's side of the helper, for people. It launches the helper and sends it requests;
// what it prints, the helper has found out, but for the commands in LibraryCommands.h.

#include "BatchCommand.h"
#include "CommandLine.h"
#include "FeedCommands.h"
#include "FileCommands.h"
#include "HelperCommands.h"
#include "ImporterCommands.h"
#include "LibraryCommands.h"
#include "MediaCommands.h"
#include "PDFCommands.h"
#include "PictureCommands.h"
#include "Quiet.h"
#include "ReportCommand.h"
#include "RichTextCommands.h"
#include "ScriptCommands.h"
#include "WebCommands.h"
#include "WorkerCommands.h"
#include "client/OstraImExport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>

using namespace caddis;
using namespace caddis::tool;

namespace {

// Longer than the 15 seconds that a page may load before its text comes without the rest.
constexpr double TimeoutSeconds = 20;

constexpr char BatchOptionsText[]
    = "  --op OP        info, text, thumbnail, preview, icon, richtext, movie, webarchive, pdf, supports, "
      "or\n"
      "                 several: info+thumbnail (info)\n"
      "  --out PLACE    a file for the records, or a folder for records and data (standard output)\n"
      "  --resume       keep the records that are there of files that have not changed\n"
      "  --jobs N       helpers at a time (one for each processor)\n"
      "  --timeout S    seconds for a request (15)\n"
      "  --memory M     bytes that a helper may have: 512M, 2G (1G)\n"
      "  --largest M    bytes of a file that is read at all\n"
      "  --size N       longer side of pictures in pixels (256)\n"
      "  --failures F   a file that remembers which files have harmed a helper; they are not asked about "
      "again\n"
      "  --log FILE     where the helpers' messages go\n"
      "  --no-sandbox   helpers may do what you may (they only read, and have no network)\n"
      "  --quiet        no progress, no summary\n"
      "Each line of - is a path or {\"file\": …, \"op\": …, \"id\": …}.\n"
      "Exit status: 0 every file was answered for, 1 some with nothing, 2 wrong usage or output, 3 some "
      "harmed a\n"
      "helper or there was none, 130 interrupted.\n";

constexpr char ReportOptionsText[]
    = "  -o FILE        the page; it needs nothing beside itself (standard output)\n"
      "  --size N       longer side of pictures in pixels (256)\n"
      "  --jobs, --timeout, --memory, --largest, --failures, --log, --no-sandbox, --quiet: as for batch\n";

constexpr char WorkerOptionsText[]
    = "  --nats URL     the server (nats://127.0.0.1:4222)\n"
      "  --queue NAME   of streams NAME and NAME_dead (caddis)\n"
      "  --op OP        of enqueue: see batch\n"
      "  --out FOLDER   of a worker: where records go, a file each\n"
      "  --drain        of a worker: end when the queue is empty\n"
      "  --deliveries N of a worker: a job that N workers could not finish is put aside (3)\n"
      "  --patience S   of workers: seconds without a word of a job before another worker gets it (30)\n"
      "  --jobs, --timeout, --memory, --largest, --size, --failures, --log, --no-sandbox, --quiet: as for "
      "batch\n";

constexpr Command table[] = {
    { "info", "FILE…", "what is known of files: title, authors and so on",
        "  $ caddis info moby-dick.epub\n"
        "  moby-dick.epub\n"
        "    kMDItemTitle    Moby-Dick\n"
        "    kMDItemAuthors  Herman Melville\n",
        1, info },
    { "text", "FILE…", "the plain text of a book, a page, a PDF, a web archive or a document",
        "  $ caddis text page.html\n"
        "  Chapter 1. Loomings.\n",
        1, text },
    { "toc", "BOOK", "a book's table of contents",
        "  $ caddis toc moby-dick.epub\n"
        "  Chapter 1. Loomings  chapter_001.xhtml\n",
        1, toc },
    { "html", "BOOK", "a whole book as one HTML page with its pictures",
        "  $ caddis html moby-dick.epub -o moby-dick.html\n", 1, html },
    { "head", "PAGE", "what a page says of itself: title, date, URLs, meta elements",
        "  $ caddis head page.html\n"
        "    title             Chapter 1\n"
        "    meta description  How it begins\n",
        1, head },
    { "richtext", "FILE", "a document of any kind as rich text: RTF, an RTFD package, or plain text",
        "  $ caddis richtext letter.docx -o letter.rtfd\n"
        "  $ caddis richtext letter.odt --json\n"
        "What -o names ends with .rtfd, .rtf or .txt. Without it the plain text is printed.\n",
        1, richtext },
    { "html2rtfd", "PAGE", "a page with what it refers to as rich text: an RTFD package",
        "  $ caddis html2rtfd page.html -o page.rtfd\n"
        "  $ curl -s http://localhost/ | caddis html2rtfd - --base http://localhost/ -o home.rtfd\n"
        "Without --allow-remote only what is on this machine and its networks is loaded.\n",
        1, html2rtfd },
    { "webarchive", "FILE", "the text of a saved page and its frames, or its markup (--source)",
        "  $ caddis webarchive page.webarchive\n"
        "  $ caddis webarchive page.webarchive --source -o page.html\n",
        1, webarchive },
    { "feed", "FILE", "an RSS or Atom feed as a page, or as its items",
        "  $ caddis feed news.xml -o news.html\n"
        "  $ curl -s https://example.org/feed | caddis feed - --items --url https://example.org/feed\n",
        1, feed },
    { "date", "TEXT…", "the instant that a date in a feed or a header means",
        "  $ caddis date 'Mon, 06 Mar 2023 18:06:57 +0200'\n"
        "  2023-03-06 16:06:57 +0000  Mon, 06 Mar 2023 18:06:57 +0200\n",
        1, date },
    { "thumbnail", "FILE…", "what is known of pictures, or small ones of them (-o)",
        "  $ caddis thumbnail photo.jpg --size 128 -o small.png\n"
        "  $ caddis thumbnail *.jpg -o thumbnails/\n"
        "  $ caddis thumbnail drawing.eps\n"
        "  drawing.eps\n"
        "    Size       {120, 80}\n"
        "    PixelSize  {120, 80}\n"
        "    Alpha      yes\n"
        "    Thumbnail  <38600 bytes>\n",
        1, thumbnail },
    { "preview", "FILE…", "a picture of a file of any kind, or its icon (--icon)",
        "  $ caddis preview letter.odt -o letter.png\n"
        "  $ caddis preview --icon --size 64 *.* -o icons/\n",
        1, preview },
    { "movie", "FILE…", "size, duration and tags of movies and sound, or the poster (-o)",
        "  $ caddis movie trailer.mp4\n"
        "  trailer.mp4\n"
        "    Duration  5.022\n"
        "    Size      {854, 480}\n"
        "  $ caddis movie trailer.mp4 -o poster.png\n",
        1, movie },
    { "pdf-of-image", "FILE", "a PDF or PostScript picture as PDF",
        "  $ caddis pdf-of-image drawing.eps -o drawing.pdf\n", 1, pdfOfImage },
    { "page", "PDF N", "one page of a PDF as a PNG picture",
        "  $ caddis page manual.pdf 1 --size 256 -o cover.png\n", 2, page },
    { "pdf-fix", "IN OUT", "a PDF written anew, where that loses nothing",
        "  $ caddis pdf-fix odd.pdf clean.pdf\n", 2, pdfFix },
    { "supports", "FILE…", "whether something can be found out about files of their kind",
        "  $ caddis supports moby-dick.epub notes.xyz\n"
        "  yes  moby-dick.epub\n"
        "  no   notes.xyz\n",
        1, supports },
    { "importers", "", "the importers in search order: what they read, and why one is not used",
        "  $ caddis importers\n"
        "  /System/Library/Spotlight/Mail.mdimporter\n"
        "    contentTypes  com.apple.mail.email public.email-message\n",
        0, importers },
    { "bookmark", "FILE", "bookmark data, which leads to the file even when it is renamed",
        "  $ caddis bookmark moby-dick.epub -o moby.bookmark\n", 1, bookmark },
    { "script", "run|check|handlers FILE [HANDLER ARGUMENTS…]",
        "runs a script or one of its handlers, checks it, or lists what it has",
        "  $ caddis script run sums.applescript add 2 3\n"
        "  5\n"
        "  $ caddis script run --source 'words of \"a b\"'\n"
        "  {\"a\", \"b\"}\n"
        "An argument is a JSON value, or else a text.\n",
        1, script },
    { "batch", "FILE|FOLDER|-…", "a line of JSON for each of many files, by several helpers at once",
        "  $ caddis batch --op info --out records.jsonl ~/Documents\n"
        "  2,412 files in 9.1 s (265/s): 1,396 ok, 1,006 unsupported, 10 encrypted\n"
        "  $ find / -name '*.pdf' | caddis batch --op text --resume --out texts/ -\n",
        1, batch, BatchOptionsText },
    { "report", "FOLDER", "one page with pictures, titles and texts of all files in a folder",
        "  $ caddis report ~/Books -o books.html\n", 1, report, ReportOptionsText },
    { "enqueue", "FILE|FOLDER|-…", "jobs for workers, into a queue on a NATS server",
        "  $ caddis enqueue --nats nats://queue:4222 --op text /archive\n", 1, enqueue, WorkerOptionsText },
    { "worker", "", "does jobs out of that queue, on as many machines as there are",
        "  $ caddis worker --nats nats://queue:4222 --out /results\n", 0, worker, WorkerOptionsText },
    { "ping", "", "whether the helper answers, and how fast",
        "  $ caddis ping\n"
        "  the helper answered in 0.041 ms\n",
        0, ping },
    { "terminate", "", "end the helper that runs", "  $ caddis ping --keep && caddis terminate\n", 0,
        terminate },
};

ExitCode run(CommandLine& line)
{
    auto helper = HelperTask::initWithPath(helperPath(), String(HelperServiceName), &OstraImExport,
        TimeoutSeconds, QualityOfService::UserInitiated);
    std::shared_ptr<Connection> connection;
    line.invocation.runningHelper = [&] { return helper->launchedProxy(); };
    line.invocation.helper = [&] {
        auto proxy = helper->launchedProxy();
        if (!proxy) {
            const Quiet quiet(line.keep);
            proxy = helper->launch();
        }
        connection = proxy ? proxy->connection() : throw HelperUnavailable();
        return *proxy;
    };
    ExitCode code = HelperFailed;
    try {
        code = line.command->run(line.invocation);
    } catch (const HelperUnavailable&) {
        std::fputs("caddis: no helper could be launched\n", stderr);
    } catch (const Exception& exception) {
        std::fprintf(stderr, "caddis: the helper failed: %s\n", exception.what());
    } catch (const std::bad_alloc&) {
        std::fputs("caddis: there is not enough memory\n", stderr);
    }
    for (const String& what : connection ? connection->takeLeftOut() : std::vector<String>())
        std::fprintf(stderr, "caddis: left out: %s\n", what.utf8().c_str());
    if (line.keep)
        std::exit(code); // From in here: the task's end would terminate the helper.
    return code;
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
// What the library of fonts keeps for itself.
extern "C" [[gnu::visibility("default")]] const char*
__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): the tool's name
{
    return "leak:libfontconfig";
}
#endif

int main(int argumentCount, char** arguments)
{
    CommandLine line
        = parse({ arguments + 1, static_cast<std::size_t>(std::max(argumentCount - 1, 0)) }, table);
    if (line.mistake || line.help || !line.command)
        return complain(line, table);
    return run(line);
}
