#include "settings/color_scheme.h"

#include "settings/color_table.h"
#include "settings/settings_file.h"
#include "settings/system_colors.h"

#include <algorithm>

namespace
{
constinit COLORREF s_highlight = SystemColor::Highlight;
constinit COLORREF s_highlightText = SystemColor::HighlightText;

const QString kSection = QStringLiteral("Colors-Current");

// What the device theme's table would hold. Only the band under day titles is asked for.
COLORREF ShellColor(int index, COLORREF fallback)
{
    return index == 8 ? SystemColor::TitleBand : fallback;
}
} // namespace

void SetSystemColors(COLORREF highlight, COLORREF highlightText)
{
    s_highlight = highlight & 0xFFFFFF;
    s_highlightText = highlightText & 0xFFFFFF;
}

COLORREF GetHighlightColor()
{
    return s_highlight;
}
COLORREF GetHighlightTextColor()
{
    return s_highlightText;
}

void CColorScheme::ResetColors()
{
    m_colorIds.clear();
    m_colorValues.clear();
    for (const CColorKey& color : kColorKeys) {
        m_colorIds.emplace(QString::fromLatin1(color.Key), color.Id);
        m_colorValues.emplace_hint(m_colorValues.end(), color.Id, color.Default);
    }
}

COLORREF CColorScheme::GetStoredColor(int id) const
{
    const auto found = m_colorValues.find(id);
    return found == m_colorValues.end() ? kColorNotSet : found->second;
}

COLORREF CColorScheme::ResolveColor(int id) const
{
    const COLORREF stored = GetStoredColor(id);
    return stored == kColorNotSet ? DefaultColor(id) : stored;
}

COLORREF CColorScheme::ResolveChosenColor(int id, int otherwise) const
{
    const auto* const key = std::find_if(std::begin(kColorKeys), std::end(kColorKeys),
                                         [id](const CColorKey& known) { return known.Id == id; });
    const bool isChosen = key != std::end(kColorKeys) && GetStoredColor(id) != key->Default;
    return ResolveColor(isChosen ? id : otherwise);
}

COLORREF CColorScheme::DefaultColor(int id, bool* hasRule) const
{
    if (hasRule)
        *hasRule = true;
    switch (id) {
    case 504:
    case 3007:
    case 3012:
    case 4011:
    case 5004:
    case 5011:
    case 6005:
    case 6022:
    case 7005:
        return s_highlight;
    case 503:
    case 505:
    case 6006:
        return s_highlightText;
    case 3008:
        return Blend(ResolveColor(3007), kColorBlack, 40);
    case 4006:
        return ShellColor(8, kColorBlack);
    case 5003:
        return Lighten(ResolveColor(5004), 80);
    case 5005:
        return Lighten(ResolveColor(5004), 150);
    case 5010:
        return Lighten(ResolveColor(5004), 48);
    case 6001:
        return Lighten(ResolveColor(6005), 80);
    case 6002:
        return Lighten(ResolveColor(6005), 48);
    case 6004:
        return Lighten(ResolveColor(6005), 150);
    }
    if (hasRule)
        *hasRule = false;
    return kColorBlack;
}

int CColorScheme::NextColorId(int id)
{
    switch (id) {
    case 0:
        return 500;
    case 505:
        return 1000;
    case 1004:
        return 2000;
    case 2003:
        return 3000;
    case 3013:
        return 4000;
    case 4011:
        return 5000;
    case 5012:
        return 6000;
    case 6016:
        return 6019;
    case 6023:
        return 7000;
    case 7009:
        return -1;
    }
    return id + 1;
}

void CColorScheme::LoadColors(const CSettingsFile& file)
{
    const CSettingsSection* section = file.FindSection(kSection);
    if (!section)
        return;
    for (const QString& key : section->m_keyOrder) {
        COLORREF color = kColorNotSet;
        if (file.GetColor(kSection, key, &color))
            m_colorValues[m_colorIds[key]] = color; // a key of another program's enters with number 0
    }
}

void CColorScheme::SaveColors(CSettingsFile& file) const
{
    file.AddSection(kSection);
    for (const auto& [key, id] : m_colorIds)
        file.SetColor(kSection, key, GetStoredColor(id));
}
