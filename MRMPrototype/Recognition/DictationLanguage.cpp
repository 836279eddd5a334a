#include "Recognition/DictationLanguage.h"

#include <utility>

namespace murmel {

std::string_view title(DictationLanguage language) {
  switch (language) {
    case DictationLanguage::english:
      return "English";
    case DictationLanguage::spanish:
      return "Spanish";
    case DictationLanguage::french:
      return "French";
    case DictationLanguage::german:
      return "German";
    case DictationLanguage::italian:
      return "Italian";
    case DictationLanguage::portuguese:
      return "Portuguese";
    case DictationLanguage::romanian:
      return "Romanian";
    case DictationLanguage::dutch:
      return "Dutch";
    case DictationLanguage::danish:
      return "Danish";
    case DictationLanguage::swedish:
      return "Swedish";
    case DictationLanguage::finnish:
      return "Finnish";
    case DictationLanguage::hungarian:
      return "Hungarian";
    case DictationLanguage::estonian:
      return "Estonian";
    case DictationLanguage::latvian:
      return "Latvian";
    case DictationLanguage::lithuanian:
      return "Lithuanian";
    case DictationLanguage::maltese:
      return "Maltese";
    case DictationLanguage::polish:
      return "Polish";
    case DictationLanguage::czech:
      return "Czech";
    case DictationLanguage::slovak:
      return "Slovak";
    case DictationLanguage::slovenian:
      return "Slovenian";
    case DictationLanguage::croatian:
      return "Croatian";
    case DictationLanguage::bosnian:
      return "Bosnian";
    case DictationLanguage::russian:
      return "Russian";
    case DictationLanguage::ukrainian:
      return "Ukrainian";
    case DictationLanguage::belarusian:
      return "Belarusian";
    case DictationLanguage::bulgarian:
      return "Bulgarian";
    case DictationLanguage::serbian:
      return "Serbian";
    case DictationLanguage::greek:
      return "Greek";
  }
  std::unreachable();
}

}  // namespace murmel
