"""What became of many stations while they were disturbed, second by second, and a picture of it."""


class Course:
    def __init__(self):
        self.times, self.written, self.came, self.poses, self.kills = [], [], [], [], []

    def add(self, seconds, written, came, poses):
        """`written`, `came`: results at the stations and at the reader; `poses`: messages so far."""
        self.times.append(seconds)
        self.written.append(written)
        self.came.append(came)
        self.poses.append(poses)

    def add_kill(self, seconds, is_broker):
        self.kills.append((seconds, is_broker))

    def draw(self, path, stations):
        import matplotlib
        matplotlib.use("Agg")
        from matplotlib import pyplot

        figure, (results, waiting, poses) = pyplot.subplots(3, 1, sharex=True, figsize=(8, 6),
                                                            layout="constrained", height_ratios=(3, 2, 2))
        for axes in (results, waiting, poses):
            for is_broker, colour in ((False, "0.8"), (True, "tab:red")):
                label = "broker killed" if is_broker else "a station killed"
                for at in [at for at, kind in self.kills if kind == is_broker]:
                    axes.axvline(at, color=colour, linewidth=1, label=label)
                    label = None
        results.plot(self.times, self.came, color="tab:blue", label="came to the reader")
        results.set_ylabel("results")
        results.legend(loc="upper left")
        waiting.plot(self.times, [max(0, written - came) for written, came in zip(self.written, self.came)],
                     color="tab:orange")
        waiting.set_ylabel("results on the way")
        steps = list(zip(zip(self.times, self.poses), zip(self.times[1:], self.poses[1:])))
        poses.plot([later[0] for _, later in steps],
                   [(later[1] - before[1]) / (later[0] - before[0]) for before, later in steps],
                   color="tab:green")
        poses.set(xlabel="s", ylabel="poses/s")
        for axes in (results, waiting, poses):
            axes.set_ylim(bottom=0)
        figure.suptitle(f"{stations} stations at one broker")
        figure.savefig(path, dpi=96)
