#include "Segmentation/IncrementalDictationSession.h"
#include "Segmentation/RetryAudio.h"
#include "Support/SessionBench.h"
#include "Support/SoundTape.h"

#include <cctype>

namespace {

using Answer = ScriptedTranscriptionProvider::Answer;
using Texts = std::vector<std::string>;
using Answers = std::vector<Result<std::string>>;
constexpr double infinite = std::numeric_limits<double>::infinity();
const auto empty = std::unexpected(MRMError(MRMError::Case::noSpeech));
const auto dead = std::unexpected(MRMError::workerFailed("worker exited unexpectedly"));

/// Phrases of four seconds with pauses: one segment each with a target of three seconds.
SoundTape phrases(int count, double pause = 1) {
  SoundTape tape;
  tape.noise(0.5);
  for (int phrase = 0; phrase < count; ++phrase) tape.speech(4).noise(pause);
  return tape;
}

Texts texts(const std::vector<RecognisedPiece>& pieces) {
  Texts texts;
  for (const auto& piece : pieces) texts.push_back(piece.text.reveal());
  return texts;
}

TEST(IncrementalSession, RecognisesInOrderWhileRecording) {
  SessionBench bench;
  bench.answer({"one", "two", "three"}, 1s);
  bench.configuration.languageCode = "de";
  bench.start();
  bench.record(phrases(3).audio());
  const auto figures = bench.session->diagnostics();
  EXPECT_EQ(figures.segmentsBeforeStop, 3);
  EXPECT_EQ(figures.completedBeforeStop, 2) << "the third was just cut";
  const auto result = bench.finish();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->text.reveal(), "one two three");
  EXPECT_EQ(texts(result->pieces), (Texts{"one", "two", "three"}));
  EXPECT_EQ(result->failedPieces, 0);
  EXPECT_EQ(result->providerID, "scripted");
  EXPECT_EQ(bench.provider->requests[1].language, "de");
  EXPECT_NEAR(bench.session->diagnostics().duration, 15.5, 1e-6);
  EXPECT_EQ(bench.session->diagnostics().completedBeforeStop, 2);
}

TEST(IncrementalSession, WhatIsRecognisedInAPauseStandsOnlyWhenNobodySpeaksOn) {
  struct Row {
    const char* what;
    SoundTape tape;
    Duration takes;
    std::size_t requestsBeforeStop;
    std::string text;
  };
  const auto said = SoundTape().noise(0.5).speech(3).noise(0.8);
  const std::vector<Row> rows{
      {"the words are there at the stop", said, 100ms, 1, "w0"},
      {"they are waited for", said, 800ms, 1, "w0"},
      {"a long silence asks for them once", SoundTape(said).noise(10), 100ms, 1, "w0"},
      {"somebody speaks on", SoundTape(said).speech(1.7), 100ms, 1, "w1"},
      {"somebody speaks on while they are being recognised", SoundTape(said).speech(1.7), 5s, 1, "w1"},
      {"a second pause", SoundTape(said).speech(1).noise(1), 100ms, 2, "w1"},
      {"the first draft took too long", SoundTape(said).noise(1.2).speech(0.5).noise(0.5), 1'600ms, 1, "w1"},
      {"in noise a pause is not certain", SoundTape().noise(0.5, -26).speech(3).noise(0.8, -26), {}, 0, "w0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SessionBench bench;
    bench.configuration.targetSegmentSeconds = 15;
    bench.configuration.draftsInPauses = true;
    bench.answer({}, row.takes);
    bench.start();
    bench.record(row.tape.audio());
    EXPECT_EQ(bench.provider->requests.size(), row.requestsBeforeStop);
    const auto result = bench.finish();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->text.reveal(), row.text);
  }
}

TEST(IncrementalSession, WithoutATargetItWaitsForTheStop) {
  SessionBench bench;
  bench.answer({"first", "second"});
  bench.configuration.targetSegmentSeconds = infinite;
  bench.start();
  bench.record(phrases(12).audio());
  EXPECT_TRUE(bench.provider->requests.empty());
  const auto result = bench.finish();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->text.reveal(), "first second");
  for (const auto& request : bench.provider->requests) EXPECT_LE(request.audio.duration(), 50);
}

TEST(IncrementalSession, EmptySegmentsAreRetriedCarriedSalvagedAndOnlyThenGivenUp) {
  struct Row {
    const char* what;
    Answers answers;  ///< three segments; every retry is a request, too
    Texts pieces;
    int failedPieces;
    int empty, recovered, carried, salvaged, unresolved;
  };
  const std::vector<Row> rows{
      {"a retry recovers it", {"a", empty, "b", "c"}, {"a", "b", "c"}, 0, 1, 1, 0, 0, 0},
      {"an empty text is as empty", {"a", " ", "b", "c"}, {"a", "b", "c"}, 0, 1, 1, 0, 0, 0},
      {"its successor salvages it", {"a", empty, empty, "bc"}, {"a", "bc"}, 0, 1, 0, 1, 1, 0},
      {"nothing helps", {"a", empty, empty, empty, "c"}, {"a", "c"}, 1, 1, 0, 1, 0, 1},
      {"two in a row, the second carried on", Answers{empty, empty, empty, empty, empty, "bc"}, Texts{"bc"},
       1, 2, 0, 2, 1, 1},
      {"the last one has no successor", {"a", "b", empty, empty}, Texts{"a", "b"}, 1, 1, 0, 0, 0, 1},
      {"the worker dies over both together: the second is safe",
       Answers{"a", empty, empty, dead, dead, dead, dead, dead, "c"}, Texts{"a", "c"}, 1, 1, 0, 1, 0, 1},
      {"the worker dies over the retry: the successor salvages it",
       Answers{"a", empty, dead, dead, dead, dead, dead, "bc"}, Texts{"a", "bc"}, 0, 1, 0, 1, 1, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SessionBench bench;
    bench.answer(row.answers);
    bench.start();
    bench.record(phrases(3).audio());
    const auto result = bench.finish();
    ASSERT_TRUE(result);
    EXPECT_EQ(texts(result->pieces), row.pieces);
    EXPECT_EQ(result->failedPieces, row.failedPieces);
    const auto figures = bench.session->diagnostics();
    EXPECT_EQ(figures.empty, row.empty);
    EXPECT_EQ(figures.recovered, row.recovered);
    EXPECT_EQ(figures.carried, row.carried);
    EXPECT_EQ(figures.successorSalvaged, row.salvaged);
    EXPECT_EQ(figures.unresolved, row.unresolved);
    EXPECT_EQ(figures.abandonedSeconds > 0, row.unresolved > 0);
    EXPECT_EQ(bench.provider->requests.size(), row.answers.size());
    EXPECT_EQ(bench.log.count("empty_recognition"), row.empty);
  }
}

TEST(IncrementalSession, ARetryIsLouderAndASalvageIsBothSegments) {
  SessionBench bench;
  bench.answer({empty, empty, "both"});
  bench.start();
  bench.record(phrases(2).audio());
  ASSERT_TRUE(bench.finish());
  ASSERT_EQ(bench.converted.size(), 2U);
  auto both = bench.converted[0].pcm16LE;
  both.insert(both.end(), bench.converted[1].pcm16LE.begin(), bench.converted[1].pcm16LE.end());
  ASSERT_EQ(bench.provider->requests.size(), 3U);
  EXPECT_EQ(bench.provider->requests[0].audio.pcm16LE, bench.converted[0].pcm16LE);
  EXPECT_EQ(bench.provider->requests[1].audio.pcm16LE, retryAudio(bench.converted[0]).pcm16LE);
  EXPECT_EQ(bench.provider->requests[2].audio.pcm16LE, both);
}

TEST(IncrementalSession, WhatTheRecogniserNeverHearsAndWhatTheUserIsNotTold) {
  struct Row {
    const char* what;
    SoundTape tape;
    std::size_t requests;
    MRMError error;
    double abandoned;  ///< at least
  };
  const std::vector<Row> rows{
      {"nothing at all", SoundTape(), 0, MRMError::Case::noSpeech, 0},
      {"a dead microphone", SoundTape().zeros(20), 0, MRMError::Case::noSpeech, 0},
      {"a quiet room", SoundTape().noise(100), 0, MRMError::Case::noSpeech, 0},
      {"a hum", SoundTape().hum(60, 50, -15), 0, MRMError::Case::noSpeech, 0},
      {"music that is no words", SoundTape().music(2, -15), 1, MRMError::Case::noSpeech, 2},
      {"speech that gives no words, and none follows", SoundTape().noise(0.5).speech(4).noise(9), 2,
       MRMError::Case::unrecognizedSpeech, 4},
      {"speech that gives no words", SoundTape().noise(0.5).speech(2), 2, MRMError::Case::unrecognizedSpeech,
       2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    SessionBench bench;
    bench.script = [](const auto&, std::size_t) { return Answer{empty}; };
    bench.start();
    bench.record(row.tape.audio());
    const auto result = bench.finish();
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), row.error);
    EXPECT_EQ(bench.provider->requests.size(), row.requests);
    EXPECT_GE(bench.session->diagnostics().abandonedSeconds, row.abandoned);
    EXPECT_NEAR(bench.session->diagnostics().duration, row.tape.seconds(), 1e-6);
  }
}

/// Names the segment that a request consists of.
std::string segmentOf(const SessionBench& bench, const ScriptedTranscriptionProvider::Request& request) {
  const auto segment = std::ranges::find_if(
      bench.converted, [&](const auto& audio) { return audio.pcm16LE == request.audio.pcm16LE; });
  return "s" + std::to_string(segment - bench.converted.begin());
}

Task<void> keepPhrase(Texts* delivered, SpokenText text) {
  delivered->push_back(text.reveal());
  co_return;
}

TEST(IncrementalSession, NoWordIsLostWithTheEngineWhateverHappensToIt) {
  const auto audio = phrases(4).audio();
  for (int trouble = 0; trouble < 20; ++trouble) {
    const bool live = trouble % 3 == 0;
    SessionBench bench;
    const auto from = bench.executor.now() + trouble * 1s;
    const auto isDown = [&] { return bench.executor.now() >= from && bench.executor.now() < from + 4s; };
    bench.script = [&](const auto& request, std::size_t) {
      const bool dies = isDown() || bench.executor.now() + 1s == from;
      return dies ? Answer{dead, 1s} : Answer{segmentOf(bench, request), 1s};
    };
    if (trouble % 2 == 0) bench.provider->down = isDown;
    Texts delivered;
    if (live) bench.configuration.onPhrase = [&](SpokenText text) { return keepPhrase(&delivered, text); };
    bench.start();
    bench.record(audio);
    const auto result = bench.finish();
    ASSERT_TRUE(result) << trouble;
    EXPECT_EQ(result->text.reveal(), "s0 s1 s2 s3") << trouble;
    EXPECT_EQ(result->failedPieces, 0);
    EXPECT_EQ(delivered, live ? (Texts{"s0", "s1", "s2", "s3"}) : Texts{});
  }
}

TEST(IncrementalSession, AudioThatKillsEveryWorkerIsTriedLastAndCostsTheOthersNothing) {
  SessionBench bench;
  bench.script = [&](const auto& request, std::size_t) {
    const auto name = segmentOf(bench, request);
    return name == "s1" ? Answer{dead, 1s} : Answer{name, 1s};
  };
  bench.start();
  bench.record(phrases(4).audio());
  EXPECT_EQ(texts(bench.session->recognisedSoFar()), (Texts{"s0", "s2"})) << "before the stop";
  const auto result = bench.finish();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->text.reveal(), "s0 s2 s3");
  ASSERT_EQ(result->missing.size(), 1U);
  EXPECT_EQ(result->missing.front().begin, result->pieces[0].span.end);
  EXPECT_EQ(result->missing.front().end, result->pieces[1].span.begin);
  EXPECT_LE(result->pieces.back().span.end, bench.session->diagnostics().duration);
}

TEST(IncrementalSession, AWorkerThatNeverComesBackEndsTheWaitWithItsReason) {
  SessionBench bench;
  bench.script = [](const auto&, std::size_t) { return Answer{dead, 45s}; };
  bench.configuration.targetSegmentSeconds = infinite;
  bench.start();
  bench.record(phrases(30).audio());
  const auto begin = bench.executor.now();
  const auto result = bench.finish();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), dead.error());
  EXPECT_LE(bench.executor.now() - begin, 6min) << "four segments, each of which could take minutes";
  EXPECT_NEAR(bench.session->diagnostics().abandonedSeconds, 150, 5);

  SessionBench half;
  half.script = [&](const auto&, std::size_t index) { return index == 0 ? Answer{"one"} : Answer{dead}; };
  half.start();
  half.record(phrases(3).audio());
  const auto rest = half.finish();
  ASSERT_TRUE(rest);
  EXPECT_EQ(rest->text.reveal(), "one");
  EXPECT_EQ(rest->failedPieces, 2) << "what was recognised is kept, and the user is told";
}

TEST(IncrementalSession, RefinesEachSegmentAndKeepsTheWordsWhenTheRefinerFails) {
  SessionBench bench;
  bench.answer({"one", "two", "three"});
  bench.configuration.refinement = std::make_shared<ScriptedRefinementProvider>(
      bench.executor, [](std::string text) -> Result<std::string> {
        if (text == "two") return std::unexpected(MRMError::Case::smartRefinementFailed);
        if (text == "three") return " ";
        return "One. ";
      });
  bench.start();
  bench.record(phrases(3).audio());
  const auto result = bench.finish();
  ASSERT_TRUE(result);
  EXPECT_EQ(texts(result->pieces), (Texts{"One.", "two", "three"}));
  EXPECT_EQ(result->refinementFailure, MRMError(MRMError::Case::smartRefinementFailed));
  EXPECT_EQ(bench.log.count("refinement_complete"), 3);
}

TEST(IncrementalSession, LooksAtTheSeamsOnceMore) {
  const auto formatted = [](std::string text) -> Result<std::string> {
    if (text == "two three") return std::unexpected(MRMError::Case::smartRefinementFailed);
    text.front() = static_cast<char>(std::toupper(text.front()));
    return text + ".";
  };
  for (const bool isLive : {false, true}) {
    SessionBench bench;
    bench.answer({"one", "two", "three", "four"});
    bench.configuration.refinement = std::make_shared<ScriptedRefinementProvider>(bench.executor, formatted);
    if (isLive) bench.configuration.onPhrase = [](SpokenText) -> Task<void> { co_return; };
    bench.start();
    bench.record(phrases(4).audio());
    const auto result = bench.finish();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->text.reveal(), isLive ? "One. Two. Three. Four." : "One two. Three four.");
  }

  SessionBench slow;
  slow.answer(std::vector<Result<std::string>>(12, "word"), 10s);
  int seams = 0;
  slow.configuration.refinement = std::make_shared<ScriptedRefinementProvider>(
      slow.executor, [&](std::string text) -> Result<std::string> {
        if (text.find(' ') == std::string::npos) return "A" + text + ".";
        ++seams;
        return text + "!";
      });
  slow.start();
  slow.record(phrases(12).audio());
  ASSERT_TRUE(slow.finish());
  EXPECT_GE(seams, 5);
  EXPECT_LE(seams, 9) << "half a second each, and three for all that are left at the stop";
}

TEST(IncrementalSession, PhrasesAreAwaited) {
  SessionBench bench;
  bench.answer({"one", "two", "three"});
  Texts log;
  struct Insert {
    static Task<void> slowly(ManualExecutor* executor, Texts* log, SpokenText text) {
      log->push_back("begin " + text.reveal());
      auto wait = sleepFor(*executor, 7s);  // longer than a phrase lasts
      co_await wait;
      log->push_back("end " + text.reveal());
    }
  };
  bench.configuration.onPhrase = [&](SpokenText text) { return Insert::slowly(&bench.executor, &log, text); };
  bench.start();
  bench.record(phrases(3).audio());
  EXPECT_EQ(log[0], "begin one") << "while the recording goes on";
  ASSERT_TRUE(bench.finish());
  EXPECT_EQ(log, (Texts{"begin one", "end one", "begin two", "end two", "begin three", "end three"}));
  EXPECT_EQ(bench.log.count("segment_callback_complete"), 3);
}

TEST(IncrementalSession, TheWaitAfterTheStopDoesNotGrowWithTheLength) {
  for (const double target : {3.0, 15.0}) {
    std::vector<double> waits;
    for (const double length : {10.0, 60.0, 150.0}) {
      SessionBench bench;
      bench.script = [](const auto& request, std::size_t) {
        return Answer{"words", secondsToDuration(0.3 * request.audio.duration())};
      };
      bench.configuration.targetSegmentSeconds = target;
      bench.start();
      SoundTape tape;
      while (tape.seconds() < length) tape.speech(3.7).noise(0.9);
      bench.record(tape.audio());
      const auto stop = bench.executor.now();
      Awaiting<Result<DictationSessionResult>> finishing(bench.session->finish());
      while (!finishing.done()) bench.executor.advance(10ms);
      waits.push_back(durationToSeconds(bench.executor.now() - stop));
    }
    const auto [least, most] = std::ranges::minmax(waits);
    EXPECT_LE(most - least, 0.3 * (target + 5)) << "more than one segment takes, target " << target;
  }
}

TEST(IncrementalSession, ReportsHowFarItIsBehind) {
  SessionBench bench;
  bench.answer({}, 10s);  // twice as slow as speech
  std::vector<std::pair<bool, std::int64_t>> reports;
  bench.configuration.onBacklog = [&](bool behind, std::int64_t revision) {
    reports.emplace_back(behind, revision);
  };
  bench.start();
  bench.record(phrases(6).audio());
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports[0], std::pair(true, std::int64_t{1}));
  ASSERT_TRUE(bench.finish());
  EXPECT_FALSE(reports.back().first);
  for (std::size_t index = 0; index < reports.size(); ++index)
    EXPECT_EQ(reports[index], std::pair(index % 2 == 0, static_cast<std::int64_t>(index + 1)));
  const auto figures = bench.session->diagnostics();
  EXPECT_TRUE(figures.everBehind);
  EXPECT_TRUE(figures.slowRequestObserved);
  EXPECT_GT(figures.maximumBacklog, 10);
}

TEST(IncrementalSession, ARecogniserThatKeepsUpIsNeverBehind) {
  SessionBench bench;
  bench.answer({}, 3s);
  bench.configuration.targetSegmentSeconds = 15;
  bench.configuration.onBacklog = [](bool, std::int64_t) { FAIL(); };
  bench.start();
  bench.record(phrases(20).audio());
  ASSERT_TRUE(bench.finish());
  EXPECT_FALSE(bench.session->diagnostics().everBehind);
}

TEST(IncrementalSession, TheLogTellsTheStagesAndNoWords) {
  SessionBench bench;
  bench.answer({"secret", "words"});
  bench.start();
  bench.record(SoundTape().zeros(0.5).audio());
  bench.record(phrases(2).audio());
  ASSERT_TRUE(bench.finish());
  EXPECT_EQ(bench.log.count("stop_received captured_seconds=11.0"), 1);
  EXPECT_EQ(bench.log.count("segment_ready duration_seconds="), 3);
  EXPECT_EQ(bench.log.count("recognition_complete"), 2);
  EXPECT_EQ(bench.log.count("pause_calibration batches="), 1);
  EXPECT_GE(bench.log.count("pause_estimates floor_db="), 2);
  EXPECT_EQ(bench.log.count("pause_low_level leading_seconds=0.5 minimum_window_db=-inf"), 1);
  EXPECT_EQ(bench.log.count("capture_progress captured_seconds=5.5"), 1) << "the first one at five seconds";
  EXPECT_EQ(bench.log.count("capture_progress"), 2);
  for (const auto& line : bench.log.lines) EXPECT_FALSE(line.contains("secret") || line.contains("words"));
}

TEST(IncrementalSession, DestroyingItInTheMiddleWithdrawsEverything) {
  for (const Duration when : {Duration(0ms), Duration(500ms), Duration(5s), Duration(11s)}) {
    SessionBench bench;
    bench.answer({}, 700ms);
    bench.start();
    bench.record(phrases(3).audio());
    Awaiting<Result<DictationSessionResult>> finishing(bench.session->finish());
    bench.executor.advance(when);
    finishing.cancel();
    bench.session.reset();
    bench.executor.advance(1h);
    EXPECT_EQ(bench.executor.pendingTimers(), 0U);
  }
}

/// Whoever awaits the end may destroy the session at once.
TEST(IncrementalSession, MayBeDestroyedByWhoeverAwaitsItsEnd) {
  SessionBench bench;
  bench.answer({}, 1s);
  bench.start();
  bench.record(phrases(2).audio());
  struct Coordinator {
    static Task<void> deliver(SessionBench* bench, bool* done) {
      auto finishing = bench->session->finish();
      const Result<DictationSessionResult> result = co_await finishing;
      *done = result.has_value();
      bench->session.reset();
    }
  };
  bool done = false;
  Scope scope;
  scope.start(Coordinator::deliver(&bench, &done));
  bench.executor.advance(1min);
  EXPECT_TRUE(done);
}

}  // namespace
