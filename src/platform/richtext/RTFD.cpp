#include "platform/richtext/RTFD.h"

#include "platform/base/Format.h"
#include "platform/richtext/FlatRTFD.h"
#include "platform/richtext/RTF.h"

#include <map>
#include <set>

namespace caddis {

namespace {

constexpr std::u16string_view TextName = u"TXT.rtf";

// The second, third … attachment of a name gets a number before it.
class MemberNames {
public:
    MemberNames() { m_taken.insert(String(TextName)); }

    String add(const String& wanted)
    {
        const String safe = safeMemberName(wanted);
        String name = safe;
        while (!m_taken.insert(name).second)
            name = safeMemberName(format(u"%d%@%@", ++m_copies[safe], String(CollisionMark), safe));
        return name;
    }

private:
    std::set<String> m_taken;
    std::map<String, int> m_copies;
};

} // namespace

std::optional<AttributedString> attributedStringWithRTFDFileWrapper(const FileWrapper& folder)
{
    const FileWrapper* text = folder.member(TextName);
    return text ? attributedStringWithRTF(text->contents, &folder) : std::nullopt;
}

std::optional<AttributedString> initWithRTFD(const Data& data)
{
    if (!isFlatRTFD(data.chars()))
        return attributedStringWithRTF(data);
    const auto folder = fileWrapperWithFlatRTFD(data);
    return folder ? attributedStringWithRTFDFileWrapper(*folder) : std::nullopt;
}

FileWrapper RTFDFileWrapperFromString(const AttributedString& text, const Dictionary& attributes)
{
    MemberNames names;
    std::vector<String> memberNames;
    std::vector<FileWrapper> members;
    for (const Attachment& attachment : text.attachments()) {
        memberNames.push_back(names.add(attachment.file.name));
        members.push_back(attachment.file);
        members.back().name = memberNames.back();
    }
    Data rtf = RTFFromString(text, attributes, RTFAttachments::Named, memberNames);
    members.push_back(FileWrapper::file(String(TextName), std::move(rtf)));
    FileWrapper folder = FileWrapper::folder({}, std::move(members));
    const auto now = static_cast<std::uint32_t>(Date::now().unixSeconds());
    for (FileWrapper& member : folder.members)
        member.attributes.modificationTime = now;
    folder.recordIndex = folder.members.size();
    return folder;
}

std::optional<Data> RTFDFromString(const AttributedString& text, const Dictionary& attributes)
{
    return flatRTFDOfFileWrapper(RTFDFileWrapperFromString(text, attributes));
}

} // namespace caddis
