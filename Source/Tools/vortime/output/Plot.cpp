#include "output/Plot.h"

#include <cstdio>

#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr double MS_PER_DAY = 8.64e7;

bool endsWith(std::string const& text, std::string const& end) {
  return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// How far the present has been moved since the start of the estimate.
double presentOffsetMs(TIM::TimeEstimateStepC const& step) {
  return (step.mappedMjd - step.startMjd) * MS_PER_DAY -
         static_cast<double>(step.mappedSteadyMs - step.startSteadyMs);
}

// As gnuplot wants a text: in single quotes, one inside doubled.
std::string quoted(std::string const& text) {
  std::string result = "'";
  for (char const c : text) {
    result += c;
    if (c == '\'') {
      result += c;
    }
  }
  return result + "'";
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
  std::string base = path;
  if (endsWith(path, ".png") || endsWith(path, ".svg")) {
    base.resize(path.size() - 4);
    pictures = {path};
  } else {
    pictures = {base + ".png", base + ".svg"};
  }
  table = base + ".tsv";
}

bool PlotC::open() {
  if (!file.create(table)) {
    error = "cannot write " + table + ": " + file.errorText();
    return false;
  }
  file.write("# seconds\tobservation_ms\testimate_ms\tsigma_ms\tpresent_ms\tcorrection_ms\n");
  return true;
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
      quoted(table) + "\n";
  for (std::string const& picture : pictures) {
    text += endsWith(picture, ".svg")
                ? "set terminal svg size 1200,675 dynamic font 'sans,14' background rgb 'white'\n"
                : "set terminal pngcairo size 1200,675 font 'sans,12'\n";
    text += "set output " + quoted(picture) +
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

bool PlotC::draw() {
  if (!file.close()) {
    error = "cannot write " + table + ": " + file.errorText();
    return false;
  }
  std::FILE* const pipe = startGnuplot();
  bool isDrawn = pipe != nullptr;
  if (isDrawn) {
    std::fputs(script().c_str(), pipe);
    isDrawn = endGnuplot(pipe) == 0;
  }
  if (!isDrawn) {
    programFailed = true;
    error = "gnuplot could not draw " + pictures.front() + " (is it installed?); the table is in " +
            table;
  }
  return isDrawn;
}

}  // namespace KTX::VORTIME
