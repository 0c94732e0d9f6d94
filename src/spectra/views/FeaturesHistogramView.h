#pragma once
#include "document/samples/rising_heights.h"
#include "document/samples/unmeasured_samples.h"
#include "spectra/figures/features/feature_filter.h"
#include "spectra/figures/features/feature_search.h"
#include "spectra/views/HistogramView.h"
#include "view/image/FeaturesSource.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

class CFeaturesTableView;

/// Finds what rises above a threshold, measures it, and shows how one of its metrics is distributed. The delimiters
/// choose features, which are drawn over the surface, painted there, listed in a table, and taken out of the image.
class VLDV_API CFeaturesHistogramView : public CHistogramView, public vldv::IFeaturesSource {
public:
    CFeaturesHistogramView();
    ~CFeaturesHistogramView() override;

    const char* viewKind() const override { return "CFeaturesHistogramView"; }
    std::string GetViewSection() override { return "FeaturesHistogramView"; }
    void setWorkingRect(const CRect& rect) override { workingRect = rect; }
    void showTable() override;
    bool canUndoPainting() const override { return search.canUndo(); }
    bool canRedoPainting() const override { return search.canRedo(); }
    void undoPainting() override;
    void redoPainting() override;

    // What the table shows
    const std::vector<Feature>& features() const noexcept { return search.features(); }
    vldv::spectra::feature_axes axes() const;
    bool isFiltered(const Feature& feature) const;
    std::size_t metric() const noexcept { return metricIndex; }
    bool isDescending() const noexcept { return sortDescending; }
    /// Features, filtered ones, those on the border, single samples and samples that were not measured.
    std::string countsText() const;
    /// Marks a feature on the surface.
    void markFeature(std::size_t number);
    /// Takes features out of the list. \param numbers  in rising order
    void removeFeatures(std::span<const std::size_t> numbers);
    /// Opens windows on some features as they are now. \param numbers  as listed; none: all of them
    void openItems(std::span<const std::size_t> numbers);

    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void LoadData() override;
    void updateText() override;
    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnTimer(unsigned id) override;
    void OnFrameClosed() override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

protected:
    vldv::spectra::height_histogram makeHistogram() override;
    std::string valueUnits() const override;
    void delimitersReleased() override { DoTheFilter(); }

private:
    /// Rising heights of the sub-image, for a call.
    struct read_image {
        vldv::document::rising_heights heights;
        std::vector<vldv::primitives::sample_run> unmeasured;
        vldv::spectra::searched_image searched;
    };
    std::optional<read_image> readImage() const;
    CSize imageSize() const;
    const VLAxis& axis(const char* option, unsigned dimension) const;
    vldv::spectra::feature_filter filter() const;
    vldv::spectra::threshold_choice threshold() const;
    std::vector<const Feature*> filteredFeatures(bool inverted = false) const;

    // Options
    void oh_reload_features(const SPMVar& changed);
    void oh_delayed_reload(const SPMVar& changed);
    void oh_refresh_view(const SPMVar& changed);
    void oh_mask_type(const SPMVar& changed);
    void oh_do_filter(const SPMVar& changed);

    void RefreshView(bool keepSelection);
    void DoTheFilter();
    void updateSurfaceMask();
    void updateSurfaceMask(const CRect& part);
    void clearOverlays();
    void UpdateTable();
    CFeaturesTableView* shownTable() const;
    void selectFeatureAt(CPoint point);
    void dropBorder();

    // The brush
    void paint(CPoint to, bool value, bool begins);
    void measureMask();
    void removeFeatureAt(CPoint point);
    void chooseMetric(unsigned metric);

    // Commands
    template <class Edit>
    void editImage(Edit edit);
    void remove_features(bool selected);
    void OnRemoveFiltered() { remove_features(false); }
    void OnRemoveSelected() { remove_features(true); }
    void OnProfileHeight();
    void OnExcludeFiltered();
    void OnFillInner();
    void OnTable() { showTable(); }
    void OnItems();
    void OnUpdateHasFeatures(CCmdUI& ui);

    CRect workingRect;
    vldv::spectra::feature_search search;
    vldv::spectra::feature_distribution distribution;
    std::size_t metricIndex = 2; ///< the area
    bool sortDescending = false;
    CPoint lastBrushPoint;
    bool reloadPending = false, reloadArmed = false;
    CDocument* shownDocument = nullptr; ///< until the window closes, which has left it by then
    std::size_t onBorder = 0;
};
