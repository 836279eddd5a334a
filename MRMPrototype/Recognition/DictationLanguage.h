#pragma once

#include "Foundation/RawValue.h"

#include <string_view>

namespace murmel {

/// The languages that the speech model knows, in display order. Raw values are ISO 639-1 codes.
enum class DictationLanguage {
  english,
  spanish,
  french,
  german,
  italian,
  portuguese,
  romanian,
  dutch,
  danish,
  swedish,
  finnish,
  hungarian,
  estonian,
  latvian,
  lithuanian,
  maltese,
  polish,
  czech,
  slovak,
  slovenian,
  croatian,
  bosnian,
  russian,
  ukrainian,
  belarusian,
  bulgarian,
  serbian,
  greek,
};

template <>
inline constexpr auto rawValueTable<DictationLanguage> = std::to_array<RawValueRow<DictationLanguage>>({
    {DictationLanguage::english, "en"},    {DictationLanguage::spanish, "es"},
    {DictationLanguage::french, "fr"},     {DictationLanguage::german, "de"},
    {DictationLanguage::italian, "it"},    {DictationLanguage::portuguese, "pt"},
    {DictationLanguage::romanian, "ro"},   {DictationLanguage::dutch, "nl"},
    {DictationLanguage::danish, "da"},     {DictationLanguage::swedish, "sv"},
    {DictationLanguage::finnish, "fi"},    {DictationLanguage::hungarian, "hu"},
    {DictationLanguage::estonian, "et"},   {DictationLanguage::latvian, "lv"},
    {DictationLanguage::lithuanian, "lt"}, {DictationLanguage::maltese, "mt"},
    {DictationLanguage::polish, "pl"},     {DictationLanguage::czech, "cs"},
    {DictationLanguage::slovak, "sk"},     {DictationLanguage::slovenian, "sl"},
    {DictationLanguage::croatian, "hr"},   {DictationLanguage::bosnian, "bs"},
    {DictationLanguage::russian, "ru"},    {DictationLanguage::ukrainian, "uk"},
    {DictationLanguage::belarusian, "be"}, {DictationLanguage::bulgarian, "bg"},
    {DictationLanguage::serbian, "sr"},    {DictationLanguage::greek, "el"},
});

/// The English name of the language.
std::string_view title(DictationLanguage language);

/// How the recognition language is chosen. Only `single` forces a language; the selected list is a preference
/// for other parts of the application.
enum class DictationLanguageMode { automaticAll, selected, single };

template <>
inline constexpr auto rawValueTable<DictationLanguageMode> =
    std::to_array<RawValueRow<DictationLanguageMode>>({
        {DictationLanguageMode::automaticAll, "automaticAll"},
        {DictationLanguageMode::selected, "selected"},
        {DictationLanguageMode::single, "single"},
    });

}  // namespace murmel
