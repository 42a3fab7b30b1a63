"""Times and sizes measured in turns with a baseline, and what is said of them."""

from statistics import median, quantiles


class Series:
    def __init__(self, values, baseline, scale=1):
        self.values = [value * scale for value in values]
        self.baseline = [value * scale for value in baseline]

    def ratio(self):
        """The median of the rounds' own ratios: load that comes and goes hits both of a round."""
        return median(value / base for value, base in zip(self.values, self.baseline))

    def cells(self, format="{:.1f}"):
        """Median and quartiles, the same of the baseline, and the ratio."""
        return [_spread(self.values, format), _spread(self.baseline, format),
                f"{self.ratio():.2f}"]


def _spread(values, format):
    text = format.format(median(values))
    if len(values) < 2:
        return text
    low, _, high = quantiles(values, n=4, method="inclusive")
    return f"{text} ({format.format(low)}–{format.format(high)})"


def table(heading, rows):
    lines = [heading, ["---"] * len(heading), *rows]
    return "\n".join("| " + " | ".join(map(str, line)) + " |" for line in lines) + "\n"
