#pragma once

#include <string_view>

namespace murmel {

/// The folder of the model store below the application's data folder.
inline constexpr std::string_view modelStoreFolder = "Models";
/// Below the store: which files have been verified, and in what state.
inline constexpr std::string_view verificationMemoryName = ".verified.json";
/// Below the store: where the downloader keeps what is still arriving.
inline constexpr std::string_view partialDownloadsFolder = ".downloads";
/// Below the resources folder: the executables that the application starts.
inline constexpr std::string_view workersFolder = "Workers";
/// Below the resources folder: the models that come with the application, the speech model in a folder of its
/// engine's name, others as in the store.
inline constexpr std::string_view packagedModelsFolder = "Models";

}  // namespace murmel
