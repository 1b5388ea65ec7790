#pragma once

#include <cstdint>

#include <string>
#include <vector>
#include "catalogue/failure.h"

namespace brizalog {

// The drawing surface of the graph windows. Coordinates are in the surface's current scale:
// origin top left, x to the right, y downward. Setting a scale keeps what is drawn; later lines
// use the new scale. Colours are blue × 65536 + green × 256 + red; a colour such as -256 is
// passed on as it stands, and the surface uses its low 24 bits.
class Plot {
public:
    virtual ~Plot() = default;
    virtual void Clear() = 0;
    virtual void SetScaleWidth(double width) = 0;
    virtual void SetScaleHeight(double height) = 0;
    virtual double ScaleWidth() const = 0;
    virtual double ScaleHeight() const = 0;
    virtual void SetDrawWidth(int pixels) = 0;
    virtual int DrawWidth() const = 0;
    virtual void Line(double x1, double y1, double x2, double y2, std::int32_t colour) = 0;
    virtual void SetBackColour(std::int32_t colour) = 0;
    virtual std::int32_t BackColour() const = 0;
};

// A surface that takes only numbers it can place: a scale or an end of a line that is infinite
// or undefined (a logged value so large that the chart's arithmetic overflows) is the failure
// Overflow, which the window reports, rather than a number the screen cannot turn into pixels.
class FinitePlot : public Plot {
public:
    explicit FinitePlot(Plot& surface) : m_surface(surface) {}
    void Clear() override { m_surface.Clear(); }
    void SetScaleWidth(double width) override { m_surface.SetScaleWidth(Finite(width)); }
    void SetScaleHeight(double height) override { m_surface.SetScaleHeight(Finite(height)); }
    double ScaleWidth() const override { return m_surface.ScaleWidth(); }
    double ScaleHeight() const override { return m_surface.ScaleHeight(); }
    void SetDrawWidth(int pixels) override { m_surface.SetDrawWidth(pixels); }
    int DrawWidth() const override { return m_surface.DrawWidth(); }
    void Line(double x1, double y1, double x2, double y2, std::int32_t colour) override {
        m_surface.Line(Finite(x1), Finite(y1), Finite(x2), Finite(y2), colour);
    }
    void SetBackColour(std::int32_t colour) override { m_surface.SetBackColour(colour); }
    std::int32_t BackColour() const override { return m_surface.BackColour(); }

private:
    Plot& m_surface;
};

// The scale a surface has before any chart sets one: the size of the surface in twips.
inline constexpr double kPlotDesignWidth = 10000;
inline constexpr double kPlotDesignHeight = 5000;
inline constexpr std::int32_t kPlotScreenColour = 4210752;  // dark grey
inline constexpr std::int32_t kPlotPrintColour = 16777215;  // white

// A surface that keeps every operation since the last clear, for the tests and the scenario
// runner. A scale operation is kept with both sizes as they stand after it.
class RecordingPlot : public Plot {
public:
    enum class OpKind : std::uint8_t { Background, Scale, Width, Line };
    struct Op {
        OpKind kind;
        std::int32_t colour;    // Background, Line; Width: the draw width
        double x1, y1, x2, y2;  // Scale: width and height in x1, y1
    };

    void Clear() override { m_ops.clear(); }
    void SetScaleWidth(double width) override {
        m_width = width;
        m_ops.push_back({OpKind::Scale, 0, m_width, m_height, 0, 0});
    }
    void SetScaleHeight(double height) override {
        m_height = height;
        m_ops.push_back({OpKind::Scale, 0, m_width, m_height, 0, 0});
    }
    double ScaleWidth() const override { return m_width; }
    double ScaleHeight() const override { return m_height; }
    void SetDrawWidth(int pixels) override {
        m_drawWidth = pixels;
        m_ops.push_back({OpKind::Width, pixels, 0, 0, 0, 0});
    }
    int DrawWidth() const override { return m_drawWidth; }
    void Line(double x1, double y1, double x2, double y2, std::int32_t colour) override {
        m_ops.push_back({OpKind::Line, colour, x1, y1, x2, y2});
    }
    void SetBackColour(std::int32_t colour) override {
        m_back = colour;
        m_ops.push_back({OpKind::Background, colour, 0, 0, 0, 0});
    }
    std::int32_t BackColour() const override { return m_back; }

    const std::vector<Op>& ops() const { return m_ops; }
    // One operation a line: "background C", "scale W H", "width N", "line X1 Y1 X2 Y2 C",
    // numbers in the shortest text that reads back.
    std::vector<std::string> Lines() const;

private:
    std::vector<Op> m_ops;
    double m_width = kPlotDesignWidth;
    double m_height = kPlotDesignHeight;
    int m_drawWidth = 1;
    std::int32_t m_back = kPlotScreenColour;
};

}  // namespace brizalog
