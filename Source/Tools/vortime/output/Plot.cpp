#include "output/Plot.h"

#include <cstdio>

#include "output/TextFormat.h"
#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

constexpr double MS_PER_DAY = 8.64e7;
constexpr char const* TABLE_HEAD =
    "# seconds\tobservation_ms\testimate_ms\tsigma_ms\tpresent_ms\tcorrection_ms\n";
constexpr std::size_t ENDING_LENGTH = 4;

// In lower case, with its point; empty for none.
std::string endingOf(std::string const& path) {
  std::string ending = fileName(filePath(path).extension());
  for (char& c : ending) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return ending;
}

// How far the present has been moved since the start of the estimate.
double presentOffsetMs(TIM::TimeEstimateStepC const& step) {
  return (step.mappedMjd - step.startMjd) * MS_PER_DAY -
         static_cast<double>(step.mappedSteadyMs - step.startSteadyMs);
}

// As gnuplot reads a text without acting upon anything in it. Names are whole, so that none begins
// with what makes gnuplot run a command.
std::string quoted(std::string const& text) {
  std::string result = "\"";
  for (char const c : text) {
    bool const isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' || c == '_' ||
                         c == '-' || c == '.' || c == ' ';
    if (isPlain) {
      result += c;
      continue;
    }
    auto const byte = static_cast<unsigned char>(c);
    result += '\\';
    for (unsigned const shift : {6U, 3U, 0U}) {
      result += static_cast<char>('0' + (static_cast<unsigned>(byte) >> shift & 7U));
    }
  }
  return result + '"';
}

std::FILE* startGnuplot() {
#if defined(_WIN32)
  return ::_popen("gnuplot", "w");
#else
  // In a locale without UTF-8 gnuplot warns of every character that is not ASCII.
  return ::popen("LC_ALL=C.UTF-8 gnuplot", "w");
#endif
}

int endGnuplot(std::FILE* pipe) {
#if defined(_WIN32)
  return ::_pclose(pipe);
#else
  return ::pclose(pipe);
#endif
}

}  // namespace

PlotC::PlotC(std::string const& path) {
  std::string const ending = endingOf(path);
  if (ending.empty()) {
    addPicture(path + ".png", PICTURE_PNG);
    addPicture(path + ".svg", PICTURE_SVG);
    table = path + ".tsv";
  } else {
    addPicture(path, ending == ".svg" ? PICTURE_SVG : PICTURE_PNG);
    table = path.substr(0, path.size() - ENDING_LENGTH) + ".tsv";
  }
}

void PlotC::addPicture(std::string const& path, PictureFormatE format) {
  pictures.push_back(PictureC{path, format, std::make_unique<ReplacedFileC>()});
}

std::string PlotC::problemOf(std::string const& path) {
  std::string const ending = endingOf(path);
  if (filePath(path).filename().empty() || path == "-") {
    return "a plot needs the name of a file";
  }
  if (!ending.empty() && ending != ".png" && ending != ".svg") {
    return "cannot draw a file that ends in " + ending +
           "; name FILE.png, FILE.svg, or FILE without an ending for both";
  }
  return {};
}

bool PlotC::open(OutputGuardC& guard) {
  for (PictureC const& picture : pictures) {
    if (!guard.open(*picture.place, picture.path, pictureMark(picture.format))) {
      return false;
    }
    if (picture.place->isDirect()) {
      return guard.fail(picture.path, "a picture needs a file");
    }
  }
  if (!guard.open(tablePlace, table, FileMarkC{TABLE_HEAD, "\n"})) {
    return false;
  }
  if (tablePlace.isDirect()) {
    return guard.fail(table, "a table needs a file");
  }
  if (!file.create(tablePlace.partPath())) {
    return guard.fail(table, file.errorText());
  }
  file.write(TABLE_HEAD);
  return true;
}

std::vector<std::string> PlotC::picturePaths() const {
  std::vector<std::string> paths;
  for (PictureC const& picture : pictures) {
    paths.push_back(picture.path);
  }
  return paths;
}

void PlotC::onEstimate(TIM::TimeEstimateStepC const& step) {
  double const elapsedMs = static_cast<double>(step.steadyMs - step.startSteadyMs);
  std::string& text = file.buffer();
  appendFixed(text, elapsedMs / 1000, 3);
  for (double const days : {step.observedMjd, step.estimatedMjd}) {
    text += '\t';
    appendFixed(text, (days - step.startMjd) * MS_PER_DAY - elapsedMs, 3);
  }
  text += '\t';
  appendFixed(text, step.estimatedSigma * MS_PER_DAY, 3);
  text += '\t';
  appendFixed(text, presentOffsetMs(step), 3);
  text += '\t';
  if (step.verdict == TIM::TIMEVERDICT_CORRECTED) {
    appendSigned(text, step.differenceMs);
  } else {
    text += "NaN";
  }
  text += '\n';
  file.commit();
}

std::string PlotC::script() const {
  std::string text =
      "set encoding utf8\n"
      "set title 'Receiver against the clock of the PC'\n"
      "set xlabel 'seconds by the steady clock'\n"
      "set ylabel 'offset from the uncorrected PC clock, ms'\n"
      "set grid back lc rgb '#d8d8d8'\n"
      "set border 3 lc rgb '#606060'\n"
      "set tics nomirror\n"
      "set xrange [0:*]\n"
      "set key outside bottom center horizontal\n"
      "set offsets graph 0.01, graph 0.02, graph 0.08, graph 0.08\n"
      "set style fill transparent solid 0.25 noborder\n"
      "t = " +
      quoted(tablePlace.path()) + "\n";
  for (PictureC const& picture : pictures) {
    text += picture.format == PICTURE_SVG
                ? "set terminal svg size 1200,675 dynamic font 'sans,14' background rgb 'white'\n"
                : "set terminal pngcairo size 1200,675 font 'sans,12'\n";
    text += "set output " + quoted(picture.place->partPath()) +
            "\n"
            "plot t using 1:($3-$4):($3+$4) with filledcurves lc rgb '#3070c0' "
            "title 'estimate ± 1 σ', \\\n"
            "  t using 1:2 with points pt 7 ps 0.5 lc rgb '#909090' title 'observation', \\\n"
            "  t using 1:3 with lines lw 2 lc rgb '#3070c0' title 'estimate', \\\n"
            "  t using 1:5 with steps lw 2 lc rgb '#209040' title 'present of the library', \\\n"
            "  t using 1:($6==$6 ? $5 : 1/0) with points pt 9 ps 1.6 lc rgb '#d03020' "
            "title 'correction', \\\n"
            "  t using 1:($6==$6 ? $5 : 1/0):(sprintf('%+d ms', int($6))) with labels "
            "left offset 0.6,0.6 font ',10' tc rgb '#d03020' notitle\n"
            "unset output\n";
  }
  return text;
}

bool PlotC::runGnuplot() {
  std::FILE* const pipe = startGnuplot();
  if (pipe == nullptr) {
    return false;
  }
  std::fputs(script().c_str(), pipe);
  return endGnuplot(pipe) == 0;
}

bool PlotC::draw() {
  if (!file.close() || !tablePlace.commit()) {
    error = "cannot write " + table + ": " +
            (file.hasFailed() ? file.errorText() : tablePlace.errorText());
    return false;
  }
  bool isDrawn = runGnuplot();
  for (PictureC const& picture : pictures) {
    isDrawn = isDrawn && markPicture(picture.place->partPath(), picture.format);
  }
  if (!isDrawn) {
    programFailed = true;
    error = "gnuplot could not draw " + pictures.front().path +
            " (is it installed?); the table is in " + table;
    return false;
  }
  for (PictureC const& picture : pictures) {
    if (!picture.place->commit()) {
      error = "cannot write " + picture.path + ": " + picture.place->errorText();
      return false;
    }
  }
  return true;
}

}  // namespace KTX::VORTIME
